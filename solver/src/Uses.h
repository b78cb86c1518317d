#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}

namespace holdfast::solver {
using namespace geometry;

/// How the solver works. Its face, which may not change with it, is include/holdfast/solver; the floors above that
/// are built together with it find these names in holdfast::solver as well.
namespace detail {}
using namespace detail;
}  // namespace holdfast::solver
