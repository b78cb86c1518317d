#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "solver/src/Uses.h"

namespace holdfast::solver::detail {

/// Finds linearly dependent rows one by one, in the order in which they are added: a row that earlier ones imply is
/// spare. Sparse Gaussian elimination with a pivot chosen in each row; cost follows the fill, which stays small for
/// rows that touch few neighbours.
class GaussianElimination {
public:
    /// Column and value of each entry of a row.
    using Entries = std::vector<std::pair<int, double>>;

    explicit GaussianElimination(int columnCount);

    /// Column and value of each entry; columns may repeat and then add up. True when the row is independent of those
    /// before. What is left below `kDependent` of the row's length counts as nothing.
    bool add(const Entries& entries);

    /// How many of these rows are independent of those added before and of each other. Nothing is added.
    int countIndependent(const std::vector<Entries>& rows);

    int rank() const { return static_cast<int>(m_rows.size()); }

    static constexpr double kDependent = 1e-7;
    /// A pivot has to be at least this part of the largest entry; among those the least used column is taken.
    static constexpr double kPivotThreshold = 0.1;
    /// Of the largest entry: what cancellation leaves would only fill later rows.
    static constexpr double kRounding = 1e-14;

private:
    struct Row {
        int pivot = -1;
        Entries entries;  ///< scaled so that the pivot's value is 1
    };

    void removeLast();
    void put(int column, double value);
    void subtract(const Row& row, double factor);
    double largestEntry() const;
    int choosePivot(double largest) const;

    std::vector<Row> m_rows;
    std::vector<int> m_rowOfPivot;  ///< per column, -1: no pivot
    std::vector<int> m_useCount;    ///< per column: rows that have it
    std::vector<double> m_work;     ///< the row at hand, by column
    std::vector<char> m_isTouched;
    std::vector<int> m_touched;
    std::vector<int> m_heap;  ///< numbers of rows whose pivots the row at hand has, smallest first
};

}  // namespace holdfast::solver::detail
