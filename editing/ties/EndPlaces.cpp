#include "editing/ties/EndPlaces.h"

#include <algorithm>
#include <cmath>

#include "document/Names.h"
#include "document/Places.h"
#include "geometry/Segments.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"

namespace holdfast::editing {

bool isSegmentPlace(const Place& place) {
    return place.kind >= PlaceKind::segment;
}

std::vector<Place> endsOf(const std::string& name, const Shape& shape) {
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        if (polyline->closed || segmentCount(*polyline) == 0)
            return {};
        return {{name, PlaceKind::segmentStart, 0},
                {name, PlaceKind::segmentEnd, static_cast<int>(segmentCount(*polyline)) - 1}};
    }
    if (std::holds_alternative<RayShape>(shape))
        return {{name, PlaceKind::start}};
    if (hasPlace(shape, {name, PlaceKind::start}) && hasPlace(shape, {name, PlaceKind::end}) &&
        pointAt(shape, {name, PlaceKind::end}))
        return {{name, PlaceKind::start}, {name, PlaceKind::end}};
    return {};
}

std::optional<Place> endAt(const std::string& name, const Shape& shape, Vec2 point, double near) {
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        const std::size_t count = segmentCount(*polyline);
        for (std::size_t i = 0; i < polyline->vertices.size() && count > 0; ++i)
            if (distance(polyline->vertices[i], point) <= near)
                return i < count ? Place{name, PlaceKind::segmentStart, static_cast<int>(i)}
                                 : Place{name, PlaceKind::segmentEnd, static_cast<int>(count) - 1};
        return {};
    }
    for (Place& end : endsOf(name, shape))
        if (distance(*pointAt(shape, end), point) <= near)
            return std::move(end);
    return {};
}

std::optional<Place> curveAt(const std::string& name, const Shape& shape, Vec2 point, double near) {
    const Nearest nearest = nearestOn(shape, point);
    if (nearest.distance > near)
        return {};
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline == nullptr)
        return Place{name, PlaceKind::whole};
    const int last = static_cast<int>(segmentCount(*polyline)) - 1;
    return Place{name, PlaceKind::segment, std::clamp(static_cast<int>(std::floor(nearest.param)), 0, last)};
}

Shape curveOf(const Shape& shape, const Place& place) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline == nullptr || !isSegmentPlace(place))
        return shape;
    return segmentCurve(*polyline, static_cast<std::size_t>(place.index));
}

std::string spokenEnd(const Place& place) {
    switch (place.kind) {
        case PlaceKind::start:
            return "the start of " + place.entity;
        case PlaceKind::end:
            return "the end of " + place.entity;
        case PlaceKind::segmentStart:
            return "the start of " + spokenPlace({place.entity, PlaceKind::segment, place.index});
        case PlaceKind::segmentEnd:
            return "the end of " + spokenPlace({place.entity, PlaceKind::segment, place.index});
        default:
            return spokenPlace(place);
    }
}

}  // namespace holdfast::editing
