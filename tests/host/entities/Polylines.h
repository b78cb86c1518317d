#pragma once

#include <memory>
#include <vector>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

namespace curves {

inline std::unique_ptr<YxDbPolyline> polyline(std::vector<holdfast::PolylineVertex> vertices, bool closed = false) {
    return holdfast::EntityAccess::makePolyline({.vertices = std::move(vertices), .closed = closed});
}

/// (0, 0) straight to (10, 0), half a circle to (10, 10), straight to (0, 10); identifiers 11 to 14.
inline std::unique_ptr<YxDbPolyline> slot(bool closed = false) {
    return polyline({{{0, 0}, 0, 11}, {{10, 0}, 1, 12}, {{10, 10}, 0, 13}, {{0, 10}, 0, 14}}, closed);
}

inline std::vector<int> identifiers(const YxDbPolyline& line) {
    std::vector<int> all;
    for (unsigned int i = 0; i < line.numVerts(); ++i)
        all.push_back(holdfast::EntityAccess::vertex(line, i).identifier);
    return all;
}
inline std::vector<double> bulges(const YxDbPolyline& line) {
    std::vector<double> all;
    for (unsigned int i = 0; i < line.numVerts(); ++i)
        all.push_back(holdfast::EntityAccess::vertex(line, i).bulge);
    return all;
}
inline YxGePoint3d vertexAt(const YxDbPolyline& line, unsigned int index) {
    YxGePoint3d point = kUntouchedPoint;
    line.getPointAt(index, point);
    return point;
}

}  // namespace curves
