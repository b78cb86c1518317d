#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Subproblem.h"

namespace holdfast::solver::detail {

/// Smallest sets of equations that contradict each other to first order: rows of the Jacobian of which one is a
/// combination of the others, and whose residuals are not so combined. Equations with larger residuals are looked at
/// first. Gaussian elimination, which tells for each dependent row the one combination of the rows before that it is.
class RowCircuits {
public:
    /// Of the subproblem where it was linearised last. Residuals within the tolerance are none.
    RowCircuits(const Subproblem& subproblem, std::span<const double> residual, double tolerance);

    /// Equations of each set; those that are found first are the smallest mostly.
    const std::vector<std::vector<int>>& found() const { return m_found; }

    /// Entries gone through, in units of some dozen.
    std::size_t cost() const { return m_cost; }

private:
    /// Column (or row) and factor.
    using Entries = std::vector<std::pair<int, double>>;

    struct Pivot {
        int column;
        Entries row, made;  ///< what is left of a row, and of which rows it was made
    };

    void collect(const Subproblem& subproblem);
    std::vector<int> inOrder(std::span<const double> residual) const;
    void add(int row);
    void eliminate(const Pivot& pivot, double factor);
    int largestColumn() const;
    void note();

    double m_tolerance;
    std::vector<Entries> m_rows;       ///< of length 1
    std::vector<double> m_residual;    ///< scaled like the rows
    std::vector<int> m_equationOfRow;  ///< number of the equation in the system
    std::vector<Pivot> m_pivots;
    std::vector<double> m_left, m_made;  ///< the row at hand, by column; of which rows it is made
    std::vector<std::vector<int>> m_found;
    std::size_t m_cost = 0;
};

}  // namespace holdfast::solver::detail
