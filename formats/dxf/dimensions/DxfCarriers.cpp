#include "formats/dxf/dimensions/DxfCarriers.h"

#include <cmath>
#include <cstddef>
#include <variant>

#include "document/Places.h"
#include "geometry/Conics.h"
#include "geometry/Segments.h"

namespace holdfast::formats {
namespace {

/// A segment of a polyline.
struct Segment {
    Vec2 from, to;
    double bulge = 0.0;
};

std::optional<Segment> segmentAt(const Shape& shape, const Place& place) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    const auto i = static_cast<std::size_t>(place.index);
    if (polyline == nullptr || place.kind == PlaceKind::whole || place.index < 0 || i >= segmentCount(*polyline))
        return std::nullopt;
    return Segment{polyline->vertices[i], polyline->vertices[segmentEndVertex(*polyline, i)], polyline->bulges[i]};
}

std::optional<DxfLine> withLength(const DxfLine& line) {
    return line.start == line.end ? std::nullopt : std::optional(line);
}

}  // namespace

std::optional<DxfLine> lineOf(const Entity& entity, const Place& place) {
    if (const auto* line = std::get_if<LineShape>(&entity.shape))
        return withLength({line->start, line->end, {entity.id, PlaceKind::whole}, {entity.id, PlaceKind::end}});
    const std::optional<Segment> segment = segmentAt(entity.shape, place);
    if (!segment || segment->bulge != 0.0)
        return std::nullopt;
    return withLength({segment->from,
                       segment->to,
                       {entity.id, PlaceKind::segment, place.index},
                       {entity.id, PlaceKind::segmentEnd, place.index}});
}

std::optional<DxfRound> roundOf(const Entity& entity, const Place& place) {
    if (const auto* circle = std::get_if<CircleShape>(&entity.shape))
        return DxfRound{circle->centre, circle->radius, {entity.id}};
    if (const auto* arc = std::get_if<ArcShape>(&entity.shape))
        return DxfRound{arc->centre, arc->radius, {entity.id}};
    const std::optional<Segment> segment = segmentAt(entity.shape, place);
    if (!segment || segment->bulge == 0.0)
        return std::nullopt;
    return DxfRound{centreOfBulge(segment->from, segment->to, segment->bulge),
                    std::abs(radiusOfBulge(segment->bulge)) * distance(segment->from, segment->to),
                    {entity.id, PlaceKind::segment, place.index}};
}

bool isEnd(PlaceKind kind) {
    return kind == PlaceKind::start || kind == PlaceKind::end || kind == PlaceKind::segmentStart ||
           kind == PlaceKind::segmentEnd;
}

}  // namespace holdfast::formats
