#include "formats/dxf/dimensions/DxfCarriers.h"

#include <cmath>
#include <cstddef>
#include <utility>
#include <variant>

#include "document/Places.h"
#include "geometry/Angles.h"
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

std::optional<DxfArc> arcOf(const Entity& entity, const Place& place) {
    if (const auto* arc = std::get_if<ArcShape>(&entity.shape))
        return DxfArc{arc->centre,
                      *pointAt(entity.shape, {"", PlaceKind::start}),
                      *pointAt(entity.shape, {"", PlaceKind::end}),
                      {entity.id},
                      {entity.id, PlaceKind::start},
                      {entity.id, PlaceKind::end}};
    const std::optional<Segment> segment = segmentAt(entity.shape, place);
    if (!segment || segment->bulge == 0.0)
        return std::nullopt;
    DxfArc arc{centreOfBulge(segment->from, segment->to, segment->bulge),
               segment->from,
               segment->to,
               {entity.id, PlaceKind::segment, place.index},
               {entity.id, PlaceKind::segmentStart, place.index},
               {entity.id, PlaceKind::segmentEnd, place.index}};
    if (segment->bulge < 0.0) {
        std::swap(arc.start, arc.end);
        std::swap(arc.startPlace, arc.endPlace);
    }
    return arc;
}

double DxfArc::sweep() const {
    const Vec2 from = start - centre, to = end - centre;
    const double angle = std::atan2(cross(from, to), dot(from, to));
    return angle <= 0.0 ? angle + kTurn : angle;
}

double DxfArc::length() const {
    return sweep() * distance(centre, start);
}

bool DxfArc::passes(Vec2 point) const {
    return DxfArc{centre, start, point, {}, {}, {}}.sweep() <= sweep();
}

bool isEnd(PlaceKind kind) {
    return kind == PlaceKind::start || kind == PlaceKind::end || kind == PlaceKind::segmentStart ||
           kind == PlaceKind::segmentEnd;
}

}  // namespace holdfast::formats
