#include "document/Places.h"

#include <algorithm>
#include <cassert>
#include <initializer_list>

#include "geometry/Conics.h"
#include "geometry/SplineCurve.h"

namespace holdfast::document {
namespace {

Vec2 between(Vec2 a, Vec2 b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

bool isIn(PlaceKind kind, std::initializer_list<PlaceKind> kinds) {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool inRange(int index, std::size_t count) {
    return index >= 0 && static_cast<std::size_t>(index) < count;
}

using enum PlaceKind;
using MaybePoint = std::optional<Vec2>;

bool has(const LineShape&, const Place& place) {
    return isIn(place.kind, {whole, start, end, mid});
}
bool has(const ArcShape&, const Place& place) {
    return isIn(place.kind, {whole, start, end, mid, centre});
}
bool has(const CircleShape&, const Place& place) {
    return isIn(place.kind, {whole, centre});
}
bool has(const EllipseShape&, const Place& place) {
    return isIn(place.kind, {whole, centre});
}
bool has(const EllipticalArcShape&, const Place& place) {
    return isIn(place.kind, {whole, start, end, centre});
}
bool has(const PointShape&, const Place& place) {
    return place.kind == whole;
}
bool has(const XlineShape&, const Place& place) {
    return isIn(place.kind, {whole, start, end});
}
bool has(const RayShape&, const Place& place) {
    return isIn(place.kind, {whole, start, end});
}
bool has(const TextShape&, const Place& place) {
    return isIn(place.kind, {whole, start});
}
bool has(const SplineShape& spline, const Place& place) {
    if (place.kind == control)
        return inRange(place.index, spline.control.size());
    return place.kind == whole || (!spline.periodic && isIn(place.kind, {start, end}));
}
bool has(const PolylineShape& polyline, const Place& place) {
    if (place.kind == whole)
        return true;
    if (!isIn(place.kind, {segment, segmentStart, segmentEnd, segmentMid, segmentCentre}))
        return false;
    if (!inRange(place.index, segmentCount(polyline)))
        return false;
    return place.kind != segmentCentre || polyline.bulges[static_cast<std::size_t>(place.index)] != 0.0;
}

MaybePoint pointIn(const LineShape& line, const Place& place) {
    if (place.kind == mid)
        return between(line.start, line.end);
    return place.kind == start ? line.start : line.end;
}
MaybePoint pointIn(const ArcShape& arc, const Place& place) {
    switch (place.kind) {
        case centre:
            return arc.centre;
        case mid:
            return circlePoint(arc.centre, arc.radius, (arc.startAngle + arc.endAngle) / 2);
        default:
            return circlePoint(arc.centre, arc.radius, place.kind == start ? arc.startAngle : arc.endAngle);
    }
}
MaybePoint pointIn(const CircleShape& circle, const Place&) {
    return circle.centre;
}
MaybePoint pointIn(const EllipseShape& ellipse, const Place&) {
    return ellipse.centre;
}
MaybePoint pointIn(const EllipticalArcShape& arc, const Place& place) {
    if (place.kind == centre)
        return arc.centre;
    return ellipsePoint(arc.centre, arc.majorAxis, arc.ratio, place.kind == start ? arc.startParam : arc.endParam);
}
MaybePoint pointIn(const SplineShape& spline, const Place& place) {
    if (place.kind == control)
        return spline.control[static_cast<std::size_t>(place.index)];
    return place.kind == start ? splineStart(spline) : splineEnd(spline);
}
MaybePoint pointIn(const PointShape& point, const Place&) {
    return point.position;
}
MaybePoint pointIn(const XlineShape& xline, const Place& place) {
    return place.kind == start ? MaybePoint(xline.point) : std::nullopt;
}
MaybePoint pointIn(const RayShape& ray, const Place& place) {
    return place.kind == start ? MaybePoint(ray.point) : std::nullopt;
}
MaybePoint pointIn(const TextShape& text, const Place&) {
    return text.position;
}
MaybePoint pointIn(const PolylineShape& polyline, const Place& place) {
    const std::size_t index = static_cast<std::size_t>(place.index);
    const Vec2 from = polyline.vertices[index], to = polyline.vertices[segmentEndVertex(polyline, index)];
    const double bulge = polyline.bulges[index];
    switch (place.kind) {
        case segmentStart:
            return from;
        case segmentEnd:
            return to;
        case segmentMid:
            return middleOfBulge(from, to, bulge);
        default:
            return centreOfBulge(from, to, bulge);
    }
}

}  // namespace

std::size_t segmentEndVertex(const PolylineShape& polyline, std::size_t segment) {
    assert(segment < segmentCount(polyline));
    return segment + 1 == polyline.vertices.size() ? 0 : segment + 1;
}

bool hasPlace(const Shape& shape, const Place& place) {
    return std::visit([&](const auto& kind) { return has(kind, place); }, shape);
}

std::string placesOf(const Shape& shape) {
    struct Words {
        std::string operator()(const LineShape&) const { return "whole, start, end or mid"; }
        std::string operator()(const ArcShape&) const { return "whole, start, end, mid or centre"; }
        std::string operator()(const CircleShape&) const { return "whole or centre"; }
        std::string operator()(const EllipseShape&) const { return "whole or centre"; }
        std::string operator()(const EllipticalArcShape&) const { return "whole, start, end or centre"; }
        std::string operator()(const SplineShape& spline) const {
            const std::string last = "control:0 to control:" + std::to_string(spline.control.size() - 1);
            return spline.periodic ? "whole or " + last : "whole, start, end or " + last;
        }
        std::string operator()(const PointShape&) const { return "whole"; }
        std::string operator()(const XlineShape&) const { return "whole, start or end"; }
        std::string operator()(const RayShape&) const { return "whole, start or end"; }
        std::string operator()(const TextShape&) const { return "whole or start"; }
        std::string operator()(const PolylineShape& polyline) const {
            return "whole or segment:0 to segment:" + std::to_string(segmentCount(polyline) - 1) +
                   ", each also with .start, .end, .mid and (an arc) .centre";
        }
    };
    return std::visit(Words(), shape);
}

std::optional<Vec2> pointAt(const Shape& shape, const Place& place) {
    if (!hasPlace(shape, place) || place.kind == segment)
        return std::nullopt;
    const auto* asPoint = std::get_if<PointShape>(&shape);
    if (place.kind == whole)
        return asPoint != nullptr ? std::optional<Vec2>(asPoint->position) : std::nullopt;
    return std::visit([&](const auto& kind) { return pointIn(kind, place); }, shape);
}

Place startOfLine(const Place& line) {
    const bool isSegment = line.kind == PlaceKind::segment;
    return {line.entity, isSegment ? PlaceKind::segmentStart : PlaceKind::start, line.index};
}

std::vector<std::string> entitiesOf(const Constraint& constraint) {
    std::vector<std::string> names;
    names.reserve(constraint.refs.size());
    for (const Place& place : constraint.refs)
        names.push_back(place.entity);
    return names;
}

}  // namespace holdfast::document
