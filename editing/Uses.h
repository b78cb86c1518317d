#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}
namespace holdfast::document {}
namespace holdfast::inference {}
namespace holdfast::hosting {}
namespace holdfast::module {}

namespace holdfast::editing {
using namespace geometry;
using namespace document;
using namespace inference;
using namespace hosting;
using namespace module;
}  // namespace holdfast::editing
