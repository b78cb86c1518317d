#include "solver/src/diagnosis/GaussianElimination.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <functional>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

GaussianElimination::GaussianElimination(int columnCount)
    : m_rowOfPivot(at(columnCount), -1),
      m_useCount(at(columnCount), 0),
      m_work(at(columnCount), 0.0),
      m_isTouched(at(columnCount), 0) {}

void GaussianElimination::put(int column, double value) {
    assert(column >= 0 && at(column) < m_work.size());
    m_work[at(column)] += value;
    if (m_isTouched[at(column)])
        return;
    m_isTouched[at(column)] = 1;
    m_touched.push_back(column);
    if (const int row = m_rowOfPivot[at(column)]; row >= 0) {
        m_heap.push_back(row);
        std::push_heap(m_heap.begin(), m_heap.end(), std::greater<>());
    }
}

void GaussianElimination::subtract(const Row& row, double factor) {
    for (const auto& [column, value] : row.entries)
        put(column, -factor * value);
    m_work[at(row.pivot)] = 0.0;
}

int GaussianElimination::choosePivot(double largest) const {
    int best = -1;
    for (const int column : m_touched) {
        if (std::abs(m_work[at(column)]) < kPivotThreshold * largest)
            continue;
        if (best < 0 || m_useCount[at(column)] < m_useCount[at(best)])
            best = column;
    }
    return best;
}

double GaussianElimination::largestEntry() const {
    double largest = 0.0;
    for (const int column : m_touched)
        largest = std::max(largest, std::abs(m_work[at(column)]));
    return largest;
}

bool GaussianElimination::add(const Entries& entries) {
    double square = 0.0;
    // Of what was given: entries of one column may cancel each other out, and what rounding leaves of them is nothing.
    for (const auto& [column, value] : entries) {
        put(column, value);
        square += value * value;
    }
    // A row is reduced by the rows before in the order of their making: each holds none of the pivots made earlier.
    while (!m_heap.empty()) {
        std::pop_heap(m_heap.begin(), m_heap.end(), std::greater<>());
        const Row& row = m_rows[at(m_heap.back())];
        m_heap.pop_back();
        if (m_work[at(row.pivot)] != 0.0)
            subtract(row, m_work[at(row.pivot)]);
    }
    const double largest = largestEntry();
    const bool isIndependent = square > 0.0 && largest > kDependent * std::sqrt(square);
    if (isIndependent) {
        Row row{choosePivot(largest), {}};
        const double scale = 1.0 / m_work[at(row.pivot)];
        for (const int column : m_touched) {
            if (std::abs(m_work[at(column)]) <= kRounding * largest)
                continue;
            row.entries.emplace_back(column, m_work[at(column)] * scale);
            ++m_useCount[at(column)];
        }
        m_rowOfPivot[at(row.pivot)] = static_cast<int>(m_rows.size());
        m_rows.push_back(std::move(row));
    }
    for (const int column : m_touched) {
        m_work[at(column)] = 0.0;
        m_isTouched[at(column)] = 0;
    }
    m_touched.clear();
    return isIndependent;
}

void GaussianElimination::removeLast() {
    assert(!m_rows.empty());
    m_rowOfPivot[at(m_rows.back().pivot)] = -1;
    for (const auto& [column, value] : m_rows.back().entries)
        --m_useCount[at(column)];
    m_rows.pop_back();
}

int GaussianElimination::countIndependent(const std::vector<Entries>& rows) {
    const int before = rank();
    for (const auto& row : rows)
        add(row);
    const int count = rank() - before;
    while (rank() > before)
        removeLast();
    assert(rank() == before);
    return count;
}

}  // namespace holdfast::solver::detail
