#pragma once

#include "solver/src/Uses.h"
#include "solver/src/numerics/Iteration.h"

namespace holdfast::solver::detail {

/// Aims that a residual may grow to while sliding.
constexpr double kSharp = 30.0;

/// The factors at hand were made for these weights and have led to x: a search for other targets from there begins with
/// them, and with the residual that is known.
bool hasCarriedTo(Subproblem& subproblem, const Pull& pull, std::span<const double> x);

/// From x, where the equations hold to the residual given, along them to the point nearest to the targets. Every point
/// on the way holds them too.
IterationReport slide(Subproblem& subproblem, const Pull& pull, std::vector<double>& x, const IterationLimits& limits,
                      double residual);

}  // namespace holdfast::solver::detail
