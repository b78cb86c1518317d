#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}

namespace holdfast::solver {
using namespace geometry;

/// How the solver works. Its face, which does not change with it, is include/holdfast/solver. The floors above that are
/// built together with it find these names in holdfast::solver as well; the face itself keeps the two apart.
namespace detail {}
#ifndef HOLDFAST_SOLVER_BUILDING
using namespace detail;
#endif
}  // namespace holdfast::solver
