#pragma once

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// What a dimension of the sketch measures now, whatever its value says and whether it drives or not. Angles lie in
/// [0, 2 pi), between curves at a point in [0, pi). Throws SketchError for a constraint that is no dimension.
double measured(const SketchData& sketch, int constraint);

/// How far each constraint is from holding now: its largest residual, as a length, computed without any merging. 0 for
/// those that do not bind. One more number at the end: the rules of the entities themselves, the worst of them.
std::vector<double> violationsOf(const SketchData& sketch);

/// Constraints that do not hold, ascending. Linear in the sketch.
std::vector<int> brokenConstraints(const SketchData& sketch);

}  // namespace holdfast::solver::detail
