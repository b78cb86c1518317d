#include "workbench/editing/LostVertices.h"

#include <cmath>
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
    const std::string spoken = spokenPlace({place.entity, PlaceKind::segment, place.index});
    if (hasStart && hasEnd)
        return {};
    if (!hasStart && !hasEnd)
        return spoken + " was cut away";
    if (place.kind != PlaceKind::segmentStart && place.kind != PlaceKind::segmentEnd)
        return "an end of " + spoken + " moved";
    if (hasStart == (place.kind == PlaceKind::segmentStart))
        return "the other end of " + spoken + " moved";
    return "the vertex of " + place.entity + " at " + pointText(hasStart ? end : start) + " is gone";
}

std::string pointText(Vec2 point) {
    // What is left of a difference of large numbers is no coordinate.
    const double least = 1e-9 * (std::abs(point.x) + std::abs(point.y));
    const auto shown = [least](double value) { return std::abs(value) < least ? 0.0 : value + 0.0; };
    char text[80];
    std::snprintf(text, sizeof text, "(%.6g, %.6g)", shown(point.x), shown(point.y));
    return text;
}

}  // namespace holdfast
