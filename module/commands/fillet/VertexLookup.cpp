#include "commands/fillet/VertexLookup.h"

#include "core/CurveEnds.h"

#include <yxdb/YxDbPolyline.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace holdfast::module {
namespace {

// Cells are at least this fraction of the greatest coordinate, so that a cell's number is exact to a small part of it.
constexpr double kFinestCell = 0x1p-40;

double reachOf(const YxGePoint3d& point) {
    return std::max(std::abs(point.x), std::abs(point.y));
}

bool isFinite(const YxGePoint3d& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

}  // namespace

VertexLookup::VertexLookup(const YxDbPolyline& polyline, unsigned int count) {
    m_points.reserve(count);
    for (unsigned int index = 0; index < count; ++index) {
        m_points.push_back(vertexPoint(polyline, index));
        if (isFinite(m_points.back()))
            m_reach = std::max(m_reach, reachOf(m_points.back()));
    }
    const double tolerance = YxGeContext::gTol.equalPoint();
    m_cellSize = std::max({4.0 * tolerance, m_reach * kFinestCell, 1e-300});
    m_reach += m_cellSize;
    m_cells.reserve(count);
    for (unsigned int index = 0; index < count; ++index) {
        if (hasCell(m_points[index]))
            m_cells[cellOf(m_points[index])].push_back(index);
    }
}

std::vector<unsigned int> VertexLookup::at(const YxGePoint3d& point) const {
    std::vector<unsigned int> found;
    for (const Indices* cell : cellsAround(point))
        std::copy_if(cell->begin(), cell->end(), std::back_inserter(found),
                     [&](unsigned int index) { return m_points[index].isEqualTo(point); });
    std::sort(found.begin(), found.end());
    return found;
}

int VertexLookup::firstAt(const YxGePoint3d& point) const {
    int first = -1;
    for (const Indices* cell : cellsAround(point)) {
        const auto found = std::find_if(cell->begin(), cell->end(),
                                        [&](unsigned int index) { return m_points[index].isEqualTo(point); });
        if (found != cell->end() && (first < 0 || static_cast<int>(*found) < first))
            first = static_cast<int>(*found);
    }
    return first;
}

std::vector<const VertexLookup::Indices*> VertexLookup::cellsAround(const YxGePoint3d& point) const {
    std::vector<const Indices*> cells;
    if (!hasCell(point))
        return cells;
    const Cell middle = cellOf(point);
    for (std::int64_t column = middle.column - 1; column <= middle.column + 1; ++column) {
        for (std::int64_t row = middle.row - 1; row <= middle.row + 1; ++row) {
            const auto cell = m_cells.find({column, row});
            if (cell != m_cells.end())
                cells.push_back(&cell->second);
        }
    }
    return cells;
}

// A point far outside the vertices' reach lies at none of them; one that is not finite equals nothing.
bool VertexLookup::hasCell(const YxGePoint3d& point) const {
    return isFinite(point) && reachOf(point) <= m_reach;
}

VertexLookup::Cell VertexLookup::cellOf(const YxGePoint3d& point) const {
    return {.column = static_cast<std::int64_t>(std::floor(point.x / m_cellSize)),
            .row = static_cast<std::int64_t>(std::floor(point.y / m_cellSize))};
}

std::size_t VertexLookup::CellHash::operator()(const Cell& cell) const {
    const auto column = static_cast<std::uint64_t>(cell.column);
    const auto row = static_cast<std::uint64_t>(cell.row);
    std::uint64_t mixed = column * 0x9E3779B97F4A7C15U + row;
    mixed = (mixed ^ (mixed >> 32)) * 0xD6E8FEB86659FD93U;
    return static_cast<std::size_t>(mixed ^ (mixed >> 29));
}

}  // namespace holdfast::module
