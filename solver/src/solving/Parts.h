#pragma once

#include <optional>

#include "solver/src/Uses.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// Solves a sketch without an edit part by part: entities that constraints connect are one, fixed entities connect
/// nothing. A part that holds is left as it is; the others are solved each for itself, with the answer that it has
/// alone, in up to so many threads as the request says; that answer is the same for every number of threads. Nothing
/// when there is no more than one part with constraints, or something that does not hold belongs to none.
///
/// Only the calling thread asks the request's budget, and evaluates residuals of a user's own. Of parts that have no
/// solution the first is told: what contradicts itself without any steps, then what comes first in the sketch. Then
/// the sketch stays as it is.
///
/// Cost: linear in the sketch, and each part's own.
std::optional<SolveResult> solvePartByPart(SketchData& sketch, const SolveRequest& request);

/// How many threads the machine runs at once; 1 when it does not tell.
int threadsOfMachine();

}  // namespace holdfast::solver::detail
