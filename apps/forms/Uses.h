#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}
namespace holdfast::document {}
namespace holdfast::formats {}
namespace holdfast::hosting {}
namespace holdfast::editing {}
namespace holdfast::report {}

namespace holdfast::forms {
using namespace geometry;
using namespace document;
using namespace formats;
using namespace hosting;
using namespace editing;
using namespace report;
}  // namespace holdfast::forms
