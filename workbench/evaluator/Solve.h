#pragma once

#include <memory>

#include "workbench/evaluator/Degenerate.h"
#include "workbench/evaluator/EquationSystem.h"
#include "workbench/evaluator/Figure.h"

namespace holdfast {

/// A value that an edit asks for.
struct Target {
    int value = -1;  ///< in Figure::values
    double goal = 0.0;
};

/// How far a solve may reach.
enum class Reach {
    rings,  ///< the neighbourhood of the edit, widened only as far as it takes: fewest elements move
    part    ///< everything that is connected with the edit: least movement in total
};

/// How firmly targets are meant, from the first to the last that is tried.
enum class Tier {
    exact,  ///< A: the targets are constants, the rest of the edited elements gives way last
    sizes,  ///< B: the targets are strong wishes, the sizes of the edited elements are constants
    wishes  ///< C: both are wishes, sizes the weaker
};

struct SolveRequest {
    std::vector<Target> targets{};  ///< empty: only makes the constraints hold again
    std::vector<int> edited{};      ///< elements that the edit is about
    Reach reach = Reach::rings;
    Tier lastTier = Tier::exact;  ///< no tier after this one is tried
    bool namesConflicts = true;   ///< search for the constraints in conflict when the solve fails
};

enum class SolveStatus {
    unchanged,  ///< everything held already
    solved,
    conflicting,  ///< constraints contradict each other or the edit
    ruined,       ///< solutions were found, but with collapsed or turned elements only
    unreached     ///< no solution was found, and no contradiction either
};

/// How far an element moved: the longest way of one of its defining points.
struct Movement {
    int entity = -1;
    double distance = 0.0;
};

struct SolveResult {
    SolveStatus status = SolveStatus::unchanged;
    Tier tier = Tier::exact;
    int iterations = 0;
    double residual = 0.0;                 ///< of the constraint that holds worst, as a length
    int worstConstraint = -1;              ///< -1: none, or a rule of an element
    std::vector<int> conflicting;          ///< constraints that cannot hold together (with the targets), ascending
    std::vector<int> contradictedTargets;  ///< numbers of targets that are part of the conflict
    std::optional<Flaw> flaw;              ///< what was wrong with the solution that was refused
    std::vector<Movement> movements;       ///< elements that moved, ascending

    bool isSolved() const { return status == SolveStatus::solved || status == SolveStatus::unchanged; }
};

/// Moves the figure as little as it takes for all binding constraints to hold and the targets to be met. When that
/// cannot be, the figure stays as it is and the result says what stands in the way. What is not connected with a
/// change does not move, to the last bit.
///
/// Throws FigureError for a constraint that its elements cannot have.
SolveResult solve(Figure& figure, const SolveRequest& request);

}  // namespace holdfast
