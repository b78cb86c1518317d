#include "solver/src/diagnosis/RowCircuits.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// What is left of a dependent row, and factors that count as none: near the least sum of squares rows that depend on
/// each other at the least itself differ by this much. What is found is tried out anyway.
constexpr double kDependent = 1e-3, kNoFactor = 1e-3;

/// Sets that are looked for; each is tried out, which costs.
constexpr std::size_t kMost = 3;

/// Entries that cost as much as one unknown in an iteration.
constexpr std::size_t kEntriesOfUnit = 32;

double lengthOfRow(std::span<const std::pair<int, double>> row) {
    double sum = 0.0;
    for (const auto& [column, value] : row)
        sum += value * value;
    return std::sqrt(sum);
}

}  // namespace

RowCircuits::RowCircuits(const Subproblem& subproblem, std::span<const double> residual, double tolerance)
    : m_tolerance(tolerance), m_residual(residual.begin(), residual.end()) {
    collect(subproblem);
    for (std::size_t r = 0; r < m_rows.size(); ++r) {
        const double length = lengthOfRow(m_rows[r]);
        for (auto& [column, value] : m_rows[r])
            value /= length > 0.0 ? length : 1.0;
        m_residual[r] /= length > 0.0 ? length : 1.0;
    }
    m_left.resize(at(subproblem.columnCount()));
    m_made.resize(m_rows.size());
    for (const int row : inOrder(residual)) {
        add(row);
        if (m_found.size() >= kMost)
            break;
    }
}

void RowCircuits::collect(const Subproblem& subproblem) {
    const ColumnPattern& pattern = subproblem.pattern();
    m_rows.resize(at(subproblem.rowCount()));
    for (int j = 0; j < subproblem.columnCount(); ++j)
        for (int k = pattern.starts[at(j)]; k < pattern.starts[at(j + 1)]; ++k)
            if (const double slope = subproblem.jacobian()[at(k)] / subproblem.metric()[at(j)]; slope != 0.0)
                m_rows[at(pattern.rows[at(k)])].emplace_back(j, slope);
    m_equationOfRow.assign(m_rows.size(), -1);
    for (std::size_t i = 0; i < subproblem.equations().size(); ++i) {
        const std::size_t end =
            i + 1 < subproblem.equations().size() ? at(subproblem.firstRowOf(i + 1)) : m_rows.size();
        std::fill(m_equationOfRow.begin() + subproblem.firstRowOf(i),
                  m_equationOfRow.begin() + static_cast<std::ptrdiff_t>(end), subproblem.equations()[i]);
    }
}

std::vector<int> RowCircuits::inOrder(std::span<const double> residual) const {
    std::vector<int> rows(m_rows.size());
    std::iota(rows.begin(), rows.end(), 0);
    std::stable_sort(rows.begin(), rows.end(),
                     [&](int a, int b) { return std::abs(residual[at(a)]) > std::abs(residual[at(b)]); });
    return rows;
}

void RowCircuits::add(int row) {
    std::fill(m_left.begin(), m_left.end(), 0.0);
    std::fill(m_made.begin(), m_made.end(), 0.0);
    for (const auto& [column, value] : m_rows[at(row)])
        m_left[at(column)] = value;
    m_made[at(row)] = 1.0;
    for (const Pivot& pivot : m_pivots)
        if (const double factor = m_left[at(pivot.column)]; factor != 0.0)
            eliminate(pivot, factor);
    m_cost += (m_pivots.size() + m_left.size()) / kEntriesOfUnit;
    const int column = largestColumn();
    if (column < 0 || std::abs(m_left[at(column)]) <= kDependent)
        return note();
    Pivot pivot{column, {}, {}};
    const double whole = m_left[at(column)];
    for (std::size_t j = 0; j < m_left.size(); ++j)
        if (m_left[j] != 0.0)
            pivot.row.emplace_back(static_cast<int>(j), m_left[j] / whole);
    for (std::size_t r = 0; r < m_made.size(); ++r)
        if (m_made[r] != 0.0)
            pivot.made.emplace_back(static_cast<int>(r), m_made[r] / whole);
    m_pivots.push_back(std::move(pivot));
}

void RowCircuits::eliminate(const Pivot& pivot, double factor) {
    for (const auto& [column, value] : pivot.row)
        m_left[at(column)] -= factor * value;
    m_left[at(pivot.column)] = 0.0;
    for (const auto& [row, value] : pivot.made)
        m_made[at(row)] -= factor * value;
    m_cost += (pivot.row.size() + pivot.made.size()) / kEntriesOfUnit;
}

int RowCircuits::largestColumn() const {
    int best = -1;
    for (std::size_t j = 0; j < m_left.size(); ++j)
        if (best < 0 || std::abs(m_left[j]) > std::abs(m_left[at(best)]))
            best = static_cast<int>(j);
    return best;
}

/// The row at hand is a combination of others. It contradicts them unless their residuals cancel as well.
void RowCircuits::note() {
    double miss = 0.0, most = 0.0, sum = 0.0;
    for (std::size_t r = 0; r < m_made.size(); ++r) {
        miss += m_made[r] * m_residual[r];
        sum += std::abs(m_made[r] * m_residual[r]);
        most = std::max(most, std::abs(m_made[r]));
    }
    if (!(std::abs(miss) > kNoFactor * sum) || sum <= m_tolerance)
        return;
    std::vector<int> equations;
    for (std::size_t r = 0; r < m_made.size(); ++r)
        if (std::abs(m_made[r]) > kNoFactor * most)
            equations.push_back(m_equationOfRow[r]);
    equations.erase(std::unique(equations.begin(), equations.end()), equations.end());
    m_found.push_back(std::move(equations));
}

}  // namespace holdfast::solver::detail
