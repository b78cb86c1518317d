#pragma once

#include "solver/src/Uses.h"
#include "solver/src/residuals/Equation.h"

namespace holdfast::solver::detail {

/// True where the formula and its slopes are worked out by hand for these operands: points, segments, axes and circles
/// that are made of values directly. These are nearly all equations of nearly all sketches, and they cost a tenth of
/// what dual numbers do.
bool hasClosedForm(const Equation& equation);

/// The rows of an equation that has a closed form, from its locals. False where the formula has no slope (lines of no
/// length, a point in the middle of a circle): then nothing counts, and the general way knows what to do.
bool evaluateClosed(const Equation& equation, const double* locals, double* rows);

/// The same, and the slopes by the locals: slopes[row * stride + local].
bool lineariseClosed(const Equation& equation, const double* locals, double* rows, double* slopes, std::size_t stride);

/// Scalar product of the unit directions of the curves of `directions` that has a closed form; not a number where one
/// has none.
double senseOfClosed(const Equation& equation, const double* locals);

}  // namespace holdfast::solver::detail
