#pragma once

#include <span>

#include "solver/src/Uses.h"
#include "solver/src/solving/Trying.h"

namespace holdfast::solver::detail {

/// An edit may be asked for in parts, and there is reason to hope: its own way has led somewhere.
bool canBeDivided(const SolveRequest& request, const Answer& failed);

/// The edit in several shorter ones, each from where the last one has led: what has given way in one of them is not
/// drawn back in the next, so that they go where a user goes who takes a few steps. Unsolved where one of them is, and
/// where all of them together leave next to nothing of something. The sketch stays as it is.
///
/// The values are the dimensions that the edit asks for, as Solving::values() has them.
Answer solveInLegs(const SketchData& sketch, const SolveRequest& request, std::span<const ValueGoal> values);

}  // namespace holdfast::solver::detail
