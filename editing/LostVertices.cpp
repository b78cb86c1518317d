#include "editing/LostVertices.h"

#include "document/Names.h"
#include "document/Places.h"
#include "editing/EditContext.h"

namespace holdfast::editing {

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
    const std::string segmentName = spokenPlace({place.entity, PlaceKind::segment, place.index});
    if (hasStart && hasEnd)
        return {};
    if (!hasStart && !hasEnd)
        return segmentName + " was cut away";
    if (place.kind != PlaceKind::segmentStart && place.kind != PlaceKind::segmentEnd)
        return "an end of " + segmentName + " moved";
    if (hasStart == (place.kind == PlaceKind::segmentStart))
        return "the other end of " + segmentName + " moved";
    return "the vertex of " + place.entity + " at " + spoken(hasStart ? end : start) + " is gone";
}

}  // namespace holdfast::editing
