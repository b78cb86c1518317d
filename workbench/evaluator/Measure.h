#pragma once

#include "workbench/evaluator/Figure.h"

namespace holdfast {

/// What a dimension of the figure measures now, whatever its value says and whether it drives or not. Angles lie in
/// [0, 2 pi), between curves at a point in [0, pi). Throws FigureError for a constraint that is no dimension.
double measured(const Figure& figure, int constraint);

/// How far each constraint is from holding now: its largest residual, as a length, computed without any merging. 0 for
/// those that do not bind. One more number at the end: the rules of the elements themselves, the worst of them.
std::vector<double> missesOf(const Figure& figure);

}  // namespace holdfast
