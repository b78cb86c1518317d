#pragma once

#include <yxbase/YxGePoint3d.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

class YxDbPolyline;

namespace holdfast::module {

/// Finds the vertices of a polyline that lie at a point, by the host's tolerance, without a walk along the polyline:
/// vertices are sorted into square cells much larger than the tolerance.
class VertexLookup {
public:
    /// The vertices 0 ... count - 1; the polyline must not change while it is asked.
    VertexLookup(const YxDbPolyline& polyline, unsigned int count);

    /// All vertices at the point, ascending.
    std::vector<unsigned int> at(const YxGePoint3d& point) const;
    /// The first vertex at the point, or -1.
    int firstAt(const YxGePoint3d& point) const;

private:
    struct Cell {
        std::int64_t column;
        std::int64_t row;
        bool operator==(const Cell&) const = default;
    };
    struct CellHash {
        std::size_t operator()(const Cell& cell) const;
    };
    using Indices = std::vector<unsigned int>;  // ascending
    std::vector<const Indices*> cellsAround(const YxGePoint3d& point) const;
    bool hasCell(const YxGePoint3d& point) const;
    Cell cellOf(const YxGePoint3d& point) const;

    std::vector<YxGePoint3d> m_points;
    double m_cellSize = 1.0;
    double m_reach = 0.0;  // no finite vertex has a greater coordinate
    std::unordered_map<Cell, Indices, CellHash> m_cells;
};

}  // namespace holdfast::module
