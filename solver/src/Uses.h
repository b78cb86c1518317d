#pragma once

// The floor that this one stands on: its names are used here as they are.
namespace holdfast::geometry {}

namespace holdfast::solver {
using namespace geometry;

/// How the solver works. Its face, which does not change with it, is include/holdfast/solver. The floors above that are
/// built together with it say that they use it.
namespace detail {}
}  // namespace holdfast::solver
