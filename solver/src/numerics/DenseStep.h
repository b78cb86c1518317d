#pragma once

#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/numerics/LinearSolver.h"

namespace holdfast::solver::detail {

/// The least step with J step = h, lengths counted by the weights, by a rank-revealing dense decomposition. It tells
/// nearly dependent equations from dependent ones far better than the sparse factors can, at the cost of rows times
/// columns times the smaller of the two.
void denseStep(const ColumnPattern& pattern, std::span<const double> jacobian, std::span<const double> weights,
               std::span<const double> h, std::span<double> step);

}  // namespace holdfast::solver::detail
