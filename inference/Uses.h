#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}
namespace holdfast::document {}
namespace holdfast::solver::detail {}

namespace holdfast::inference {
using namespace geometry;
using namespace document;
using namespace solver::detail;
}  // namespace holdfast::inference
