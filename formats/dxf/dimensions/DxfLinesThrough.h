#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/dimensions/DxfCarriers.h"

namespace holdfast::formats {

/// The lines, and straight segments of polylines, of a drawing on which some given points lie, between their ends.
///
/// Cost: each line looks at the points beside which it passes. In all at most 20 millions are looked at, which is what
/// a file takes that is made for it; what is not found then is not followed.
class DxfLinesThrough {
public:
    DxfLinesThrough(const std::vector<Entity>& entities, const std::vector<Vec2>& wanted, double tolerance);

    /// Those through one of the wanted points, in the order of the drawing.
    const std::vector<DxfLine>& at(Vec2 point) const;

private:
    using Point = std::pair<double, double>;
    void add(const DxfLine& line);

    double m_tolerance;
    std::size_t m_looks = 0;
    std::map<Point, std::vector<DxfLine>> m_lines;  // by the wanted point, from left to right
};

}  // namespace holdfast::formats
