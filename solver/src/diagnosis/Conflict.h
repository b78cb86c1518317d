#pragma once

#include "solver/src/Uses.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// Constraints and targets that cannot hold together, while any of them left out would free the others, as far as the
/// solver can tell.
struct ConflictSet {
    std::vector<int> constraints;  ///< ascending
    std::vector<int> targets;      ///< numbers in the list of targets, ascending
};

/// Narrows a set of constraints that cannot hold together with the targets down to a minimal one (U. Junker,
/// QuickXplain). Earlier constraints are kept as the given ones. Empty when they can hold after all. The sketch is
/// only read. Each question costs a solve of the elements concerned; empty as well when the budget runs out meanwhile.
ConflictSet findConflict(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                         Budget* budget = nullptr);

}  // namespace holdfast::solver::detail
