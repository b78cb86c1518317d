#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}
namespace holdfast::document {}
namespace holdfast::formats {}
namespace holdfast::inference {}
namespace holdfast::hosting {}
namespace holdfast::editing {}
namespace holdfast::report {}
namespace holdfast::forms {}

namespace holdfast::cli {
using namespace geometry;
using namespace document;
using namespace formats;
using namespace inference;
using namespace hosting;
using namespace editing;
using namespace report;
using namespace forms;
}  // namespace holdfast::cli
