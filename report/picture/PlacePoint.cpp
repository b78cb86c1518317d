#include "report/picture/PlacePoint.h"

#include <optional>

#include "document/Places.h"
#include "geometry/Conics.h"
#include "report/picture/Outline.h"
#include "report/picture/SplinePieces.h"

namespace holdfast::report {

namespace {

constexpr double kLabelAngle = kPi / 4;  // closed curves carry their labels up and right

Spot onEllipse(Vec2 centre, Vec2 major, double ratio, double param) {
    return {ellipsePoint(centre, major, ratio, param), unit(ellipseTangent(major, ratio, param))};
}

Spot onSpline(const SplineShape& spline, double share) {
    const Vec2 before = splinePointAt(spline, share - 1e-4), after = splinePointAt(spline, share + 1e-4);
    return {splinePointAt(spline, share), unit(after - before)};
}

/// A curve's start (0), middle (0.5) or end (1).
struct SpotAlong {
    double share;

    Spot operator()(const LineShape& s) const { return {s.start + (s.end - s.start) * share, unit(s.end - s.start)}; }
    Spot operator()(const ArcShape& s) const {
        return onEllipse(s.centre, {s.radius, 0.0}, 1.0, s.startAngle + (s.endAngle - s.startAngle) * share);
    }
    Spot operator()(const CircleShape& s) const { return onEllipse(s.centre, {s.radius, 0.0}, 1.0, kLabelAngle); }
    Spot operator()(const EllipseShape& s) const {
        return onEllipse(s.centre, s.majorAxis, s.ratio, kLabelAngle - std::atan2(s.majorAxis.y, s.majorAxis.x));
    }
    Spot operator()(const EllipticalArcShape& s) const {
        return onEllipse(s.centre, s.majorAxis, s.ratio, s.startParam + (s.endParam - s.startParam) * share);
    }
    Spot operator()(const SplineShape& s) const { return onSpline(s, share); }
    Spot operator()(const PointShape& s) const { return {s.position, {1.0, 0.0}}; }
    Spot operator()(const XlineShape& s) const { return {s.point, unit(s.direction)}; }
    Spot operator()(const RayShape& s) const { return {s.point, unit(s.direction)}; }
    Spot operator()(const PolylineShape& s) const {
        const int last = static_cast<int>(segmentCount(s)) - 1;
        const double within = share == 0.5 && last % 2 != 0 ? 0.0 : share;
        return std::visit(SpotAlong{within}, segmentShape(s, share == 0.0 ? 0 : share == 1.0 ? last : (last + 1) / 2));
    }
    Spot operator()(const TextShape& s) const { return {s.position, polar(1.0, s.rotation)}; }
};

std::optional<Vec2> centreOf(const Shape& shape) {
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        return arc->centre;
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        return circle->centre;
    if (const auto* ellipse = std::get_if<EllipseShape>(&shape))
        return ellipse->centre;
    if (const auto* arc = std::get_if<EllipticalArcShape>(&shape))
        return arc->centre;
    return std::nullopt;
}

/// An arc segment of a polyline runs counter-clockwise as an arc of its own, whatever way the polyline goes.
double shareOnSegment(const Shape& shape, const Place& place, double share) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline == nullptr || place.index < 0 || static_cast<std::size_t>(place.index) >= polyline->bulges.size())
        return share;
    return polyline->bulges[static_cast<std::size_t>(place.index)] < 0.0 ? 1.0 - share : share;
}

Spot controlSpot(const Shape& shape, int index) {
    const auto* spline = std::get_if<SplineShape>(&shape);
    if (spline == nullptr || spline->control.empty())
        return std::visit(SpotAlong{0.5}, shape);
    const auto last = static_cast<int>(spline->control.size()) - 1;
    return {spline->control[static_cast<std::size_t>(std::clamp(index, 0, last))], {1.0, 0.0}};
}

Vec2 nearestOnLine(Vec2 point, Vec2 direction, Vec2 to) {
    const double square = dot(direction, direction);
    return square > 0.0 ? point + direction * (dot(to - point, direction) / square) : point;
}

Vec2 nearestOnChords(const Shape& curve, Vec2 point) {
    const Box bounds = boundsOf(curve);
    Vec2 best = bounds.centre();
    double least = std::numeric_limits<double>::infinity();
    for (const std::vector<Vec2>& run :
         flattened(outlineOf(curve, bounds, bounds.diagonal() / 400), bounds.diagonal() / 400))
        for (const Vec2& each : run)
            if (const double away = distance(each, point); away < least) {
                least = away;
                best = each;
            }
    return best;
}

}  // namespace

Shape curveAt(const Shape& shape, const Place& place) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    return polyline != nullptr && place.kind == PlaceKind::segment ? segmentShape(*polyline, place.index) : shape;
}

Spot spotOf(const Shape& shape, const Place& place) {
    const auto along = [&](double share) { return std::visit(SpotAlong{share}, shape); };
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    const auto segment = [&](double share) {
        return polyline == nullptr
                   ? along(share)
                   : std::visit(SpotAlong{shareOnSegment(shape, place, share)}, segmentShape(*polyline, place.index));
    };
    switch (place.kind) {
        case PlaceKind::start:
            return along(0.0);
        case PlaceKind::end:
            return along(1.0);
        case PlaceKind::whole:
        case PlaceKind::mid:
            return along(0.5);
        case PlaceKind::centre:
            return {centreOf(shape).value_or(along(0.5).point), {1.0, 0.0}};
        case PlaceKind::control:
            return controlSpot(shape, place.index);
        case PlaceKind::segmentStart:
            return segment(0.0);
        case PlaceKind::segmentEnd:
            return segment(1.0);
        case PlaceKind::segment:
        case PlaceKind::segmentMid:
            return segment(0.5);
        case PlaceKind::segmentCentre: {
            const Shape arc = polyline == nullptr ? shape : segmentShape(*polyline, place.index);
            return {centreOf(arc).value_or(segment(0.5).point), {1.0, 0.0}};
        }
    }
    return along(0.5);
}

Vec2 nearestOn(const Shape& curve, Vec2 point) {
    if (const auto* line = std::get_if<LineShape>(&curve))
        return nearestOnLine(line->start, line->end - line->start, point);
    if (const auto* line = std::get_if<XlineShape>(&curve))
        return nearestOnLine(line->point, line->direction, point);
    if (const auto* ray = std::get_if<RayShape>(&curve))
        return nearestOnLine(ray->point, ray->direction, point);
    if (const auto* spot = std::get_if<PointShape>(&curve))
        return spot->position;
    if (const auto* circle = std::get_if<CircleShape>(&curve))
        return circle->centre + unit(point - circle->centre) * circle->radius;
    if (const auto* arc = std::get_if<ArcShape>(&curve))
        return arc->centre + unit(point - arc->centre) * arc->radius;
    return nearestOnChords(curve, point);
}

bool isPoint(const Shape& shape, const Place& place) {
    if (place.kind == PlaceKind::whole)
        return std::holds_alternative<PointShape>(shape);
    return place.kind != PlaceKind::segment;
}

}  // namespace holdfast::report
