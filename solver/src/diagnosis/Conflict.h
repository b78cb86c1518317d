#pragma once

#include "solver/src/Uses.h"
#include "solver/src/diagnosis/Feasibility.h"

namespace holdfast::solver::detail {

/// Constraints and targets that cannot hold together.
struct ConflictSet {
    std::vector<int> constraints;  ///< ascending
    std::vector<int> targets;      ///< numbers in the list of targets, ascending
    bool isMinimal = false;        ///< without any one of them the others can hold: a solution was found for each

    bool isEmpty() const { return constraints.empty() && targets.empty(); }
};

/// A minimal set of constraints that cannot hold together with the targets, taken from those given where they suffice,
/// else from all that bind. Empty when they can hold after all, or when the effort is spent before a set is found;
/// not minimal when it is spent while the set is narrowed down. The sketch is only read.
///
/// Suspects come from the least sum of squares (see suspectsAmong), are narrowed down by U. Junker's QuickXplain, and
/// what is left is proven: each member is left out and the rest solved.
ConflictSet findConflict(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                         Effort& effort);
ConflictSet findConflict(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                         Budget* budget = nullptr);

/// Conflicts of which each has a constraint that none before it has: the member drawn last leaves the sketch, and the
/// rest is searched. All together cost what one may.
std::vector<ConflictSet> findConflicts(const SketchData& sketch, Budget* budget = nullptr);

}  // namespace holdfast::solver::detail
