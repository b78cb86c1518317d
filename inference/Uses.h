#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}
namespace holdfast::document {}

namespace holdfast::inference {
using namespace geometry;
using namespace document;
}  // namespace holdfast::inference
