#include "workbench/editing/LostVertices.h"

#include <cstdio>

#include "workbench/drawing/Names.h"
#include "workbench/drawing/Places.h"

namespace holdfast {

const LostVertices::Points& LostVertices::pointsOf(const PolylineShape& polyline) {
    const auto [known, isNew] = m_points.try_emplace(&polyline);
    if (isNew)
        for (const Vec2 vertex : polyline.vertices)
            known->second.emplace(vertex.x, vertex.y);
    return known->second;
}

std::string LostVertices::reasonAt(const Place& place, const PolylineShape& was, const PolylineShape& is) {
    const Points& points = pointsOf(is);
    const auto segment = static_cast<std::size_t>(place.index);
    const Vec2 start = was.vertices[segment], end = was.vertices[segmentEndVertex(was, segment)];
    const bool hasStart = points.contains({start.x, start.y}), hasEnd = points.contains({end.x, end.y});
    if (!hasStart && !hasEnd)
        return spokenPlace({place.entity, PlaceKind::segment, place.index}) + " was cut away";
    const bool lostStart = place.kind == PlaceKind::segmentStart && !hasStart;
    const bool lostEnd = place.kind == PlaceKind::segmentEnd && !hasEnd;
    if (!lostStart && !lostEnd)
        return {};
    return "the vertex of " + place.entity + " at " + pointText(lostStart ? start : end) + " is gone";
}

std::string pointText(Vec2 point) {
    char text[80];
    std::snprintf(text, sizeof text, "(%.6g, %.6g)", point.x + 0.0, point.y + 0.0);
    return text;
}

}  // namespace holdfast
