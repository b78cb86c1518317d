#pragma once

#include <vector>

#include <holdfast/solver/FreeMotion.h>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Budget.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

using solver::EntityMotions;
using solver::FreeMotion;
using solver::MotionKind;

/// For each entity how it can move where the sketch is now, with all binding constraints kept. Where first derivatives
/// allow more than the sketch can really do (an end stretched out as far as it goes, a touch that is there anyway),
/// what comes back when it is tried is left out, in sketches of up to 2,000 unknowns.
///
/// The motions are those of random points nearby, brought back to the equations: as many as an entity has values, at
/// most 24, so that more than 24 ways of one spline are told as 24. Cost: one factorisation of the sketch, and for each
/// point a few solves with it. When the budget runs out the answer is worth nothing. Throws SketchError as solve does.
std::vector<EntityMotions> freeMotionsOf(const SketchData& sketch, Budget* budget = nullptr);

}  // namespace holdfast::solver::detail
