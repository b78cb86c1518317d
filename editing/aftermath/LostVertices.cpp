#include "editing/aftermath/LostVertices.h"

#include <algorithm>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/EditContext.h"

namespace holdfast::editing {

const LostVertices::Known& LostVertices::knownOf(const PolylineShape& polyline) {
    const auto [known, isNew] = m_known.try_emplace(&polyline);
    if (!isNew)
        return known->second;
    for (const Vec2 vertex : polyline.vertices)
        known->second.vertices.emplace(vertex.x, vertex.y);
    for (std::size_t i = 0; i < segmentCount(polyline); ++i) {
        const Vec2 start = polyline.vertices[i], end = polyline.vertices[segmentEndVertex(polyline, i)];
        known->second.segments.insert({{start.x, start.y}, {end.x, end.y}});
    }
    return known->second;
}

bool LostVertices::isLeft(Vec2 vertex, const std::vector<const PolylineShape*>& left) {
    return std::any_of(left.begin(), left.end(), [&](const PolylineShape* polyline) {
        return knownOf(*polyline).vertices.contains({vertex.x, vertex.y});
    });
}

/// In either direction.
bool LostVertices::isLeft(Vec2 start, Vec2 end, const std::vector<const PolylineShape*>& left) {
    const Point from(start.x, start.y), to(end.x, end.y);
    return std::any_of(left.begin(), left.end(), [&](const PolylineShape* polyline) {
        const auto& segments = knownOf(*polyline).segments;
        return segments.contains({from, to}) || segments.contains({to, from});
    });
}

std::string LostVertices::reasonAt(const Place& place, const PolylineShape& was,
                                   const std::vector<const PolylineShape*>& left, bool lengthCounts) {
    const auto segment = static_cast<std::size_t>(place.index);
    const Vec2 start = was.vertices[segment], end = was.vertices[segmentEndVertex(was, segment)];
    const bool hasStart = isLeft(start, left), hasEnd = isLeft(end, left);
    const std::string segmentName = spokenPlace({place.entity, PlaceKind::segment, place.index});
    if (!hasStart && !hasEnd)
        return segmentName + " was cut away";
    if (place.kind == PlaceKind::segmentStart || place.kind == PlaceKind::segmentEnd) {
        const bool isStart = place.kind == PlaceKind::segmentStart;
        if (isStart ? !hasStart : !hasEnd)
            return "the vertex of " + place.entity + " at " + spoken(isStart ? start : end) + " is gone";
        const bool isCutShort = hasStart && hasEnd && !isLeft(start, end, left);
        return isCutShort ? segmentName + " was cut short of its " + (isStart ? "start" : "end") : "";
    }
    const bool isAnyEnd = place.kind == PlaceKind::segmentMid || lengthCounts;
    return isAnyEnd && !isLeft(start, end, left) ? "an end of " + segmentName + " moved" : "";
}

}  // namespace holdfast::editing
