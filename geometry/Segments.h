#pragma once

#include <cstddef>

#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// Number of segments of a polyline: one less than its vertices, or as many when it is closed.
inline std::size_t segmentCount(const PolylineShape& polyline) {
    const std::size_t count = polyline.vertices.size();
    return polyline.closed || count == 0 ? count : count - 1;
}

}  // namespace holdfast::geometry
