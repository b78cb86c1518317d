#pragma once

#include <memory>
#include <span>
#include <vector>

#include "solver/src/Uses.h"

namespace holdfast::solver::detail {

/// A sparse matrix by columns: the rows of column j are rows[starts[j] ... starts[j + 1]), ascending.
struct ColumnPattern {
    int rowCount = 0;
    std::vector<int> starts{0};
    std::vector<int> rows;

    int columnCount() const { return static_cast<int>(starts.size()) - 1; }
};

/// Least movement under linear equations: solves
///
///     [ W   J^T ] [ step       ]   [ g ]
///     [ J  -D   ] [ multiplier ] = [ h ]
///
/// for positive definite W, diagonal unless a curvature is given, and diagonal D > 0, by a factorisation that needs no
/// pivoting because such a matrix is quasi-definite (R. J. Vanderbei, Symmetric quasidefinite matrices). D is tiny: it
/// makes redundant equations harmless, and `solve` carries the multiplier on until the answer is that of D = 0.
class LinearSolver {
public:
    LinearSolver();
    ~LinearSolver();
    LinearSolver(LinearSolver&&) noexcept;
    LinearSolver& operator=(LinearSolver&&) noexcept;

    /// Orders the unknowns for a pattern of J, and of W below its diagonal; kept for all factorisations that follow.
    void analyse(const ColumnPattern& pattern, const ColumnPattern& curvature = {});

    bool hasPattern() const;

    /// The diagonal of W, J, D, and W below its diagonal. False when a pivot is not a number.
    bool factorise(std::span<const double> weights, std::span<const double> jacobian, std::span<const double> damping,
                   std::span<const double> curvature = {});

    /// Whether the last factorisation since the pattern was given has succeeded: without one nothing can be solved.
    bool hasFactors() const;

    /// Of the last factorisation; as many as J has rows when W is positive for all steps with J step = 0.
    int negativePivots() const;

    /// Multiplications that the last factorisation took, about; 0 before the first. Linear in the unknowns and rows.
    double multiplications() const;

    /// Overwrites g with the step and h with the multiplier. isExact: refined towards D = 0, else D as it stands.
    void solve(std::span<double> g, std::span<double> h, bool isExact);

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace holdfast::solver::detail
