#pragma once

#include <memory>
#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/numerics/LinearSolver.h"

namespace holdfast::solver::detail {

class Subproblem;

/// How the equations of a subproblem bend under their multipliers. Where the targets pull hard against the equations,
/// the bend decides where the nearest point lies, and steps that know it get there in a few iterations instead of many.
///
/// Where the second derivatives as they are would lead away from the nearest point, only a part of them is used: of
/// each equation's, times its multipliers, the nearest matrix without negative eigenvalues (J. Nocedal, S. Wright,
/// Numerical Optimization, 3.4 and 18.4).
class LagrangianHessian {
public:
    explicit LagrangianHessian(Subproblem& subproblem);

    /// Second derivatives where the subproblem's unknowns are, by central differences of the exact Jacobian. Cost:
    /// linear in the equations.
    void update(std::span<const double> multiplier);

    /// Factorises with the curvature of the last update added to the weights; the Jacobian is the subproblem's, taken
    /// where the unknowns are now.
    bool factorise(std::span<const double> weights, std::span<const double> damping);
    bool hasFactors() const { return m_linear.hasFactors(); }
    void solve(std::span<double> g, std::span<double> h, bool isExact) { m_linear.solve(g, h, isExact); }

private:
    /// The distinct free unknowns of one equation, and where the pairs of them go in the pattern.
    struct Block {
        std::vector<int> columns;
        std::vector<int> entries;  ///< of the pairs (i > j), row by row
        std::vector<int> places;   ///< of the equation's slots among the columns
        std::size_t first = 0;     ///< of its second derivatives
    };

    void sum(bool isProjected);
    void differentiate(std::size_t equation);
    void add(std::size_t equation, bool isProjected);
    bool factoriseOnce(std::span<const double> weights, std::span<const double> damping);

    Subproblem& m_subproblem;
    std::vector<Block> m_blocks;  ///< per equation of the subproblem
    ColumnPattern m_pattern;
    std::vector<double> m_multiplier;
    std::vector<double> m_second;  ///< derivatives of each block, times the multipliers, column by column
    std::vector<double> m_inputs;  ///< of one equation, as they were
    std::vector<double> m_diagonal, m_values, m_weights, m_slopes;
    LinearSolver m_linear;
};

}  // namespace holdfast::solver::detail
