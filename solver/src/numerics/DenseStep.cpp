#include "solver/src/numerics/DenseStep.h"

#include <Eigen/Dense>

namespace holdfast::solver::detail {

void denseStep(const ColumnPattern& pattern, std::span<const double> jacobian, std::span<const double> weights,
               std::span<const double> h, std::span<double> step) {
    const int columns = pattern.columnCount();
    Eigen::MatrixXd matrix = Eigen::MatrixXd::Zero(pattern.rowCount, columns);
    Eigen::VectorXd scale(columns);
    for (int j = 0; j < columns; ++j) {
        const auto column = static_cast<std::size_t>(j);
        scale[j] = 1.0 / std::sqrt(weights[column]);
        for (int k = pattern.starts[column]; k < pattern.starts[column + 1]; ++k)
            matrix(pattern.rows[static_cast<std::size_t>(k)], j) = jacobian[static_cast<std::size_t>(k)] * scale[j];
    }
    Eigen::CompleteOrthogonalDecomposition<Eigen::MatrixXd> decomposition;
    constexpr double rounding = 1e-13;  // of the largest pivot: what a few hundred operations leave
    decomposition.setThreshold(rounding);
    decomposition.compute(matrix);
    const Eigen::Map<const Eigen::VectorXd> right(h.data(), pattern.rowCount);
    Eigen::Map<Eigen::VectorXd>(step.data(), columns) = scale.cwiseProduct(decomposition.solve(right));
}

}  // namespace holdfast::solver::detail
