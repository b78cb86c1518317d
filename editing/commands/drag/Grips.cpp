#include "editing/commands/drag/Grips.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "document/Places.h"
#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/Transforms.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"

namespace holdfast::editing {

namespace {

std::vector<Grip> numbered(const std::vector<Vec2>& points) {
    std::vector<Grip> grips;
    grips.reserve(points.size());
    for (const Vec2 point : points)
        grips.push_back({static_cast<int>(grips.size()), point});
    return grips;
}

bool has(const std::vector<int>& grips, int number) {
    return std::find(grips.begin(), grips.end(), number) != grips.end();
}

/// The arc between two points with the included angle of another.
ArcShape arcBetween(Vec2 start, Vec2 end, const ArcShape& like) {
    if (like.endAngle - like.startAngle > kTurn - kAlmostClosed)
        throw GeometryError("arc: goes all the way round, so that its ends cannot be moved apart; shorten it first");
    return arcOfBulge(start, end, bulgeOfAngle(like.endAngle - like.startAngle));
}

struct GripMover {
    const std::vector<int>& grips;
    Vec2 by;

    Vec2 moved(Vec2 point, bool moves) const { return moves ? point + by : point; }
    Shape whole(const Shape& shape) const { return transformed(shape, translation(by)); }

    Shape operator()(const LineShape& s) const {
        const bool both = has(grips, 2);
        return LineShape{moved(s.start, both || has(grips, 0)), moved(s.end, both || has(grips, 1))};
    }
    Shape operator()(const ArcShape& s) const {
        const bool startMoves = has(grips, 0), endMoves = has(grips, 1);
        if (has(grips, 2) || (startMoves && endMoves))
            return whole(s);
        const Vec2 start = s.centre + s.radius * polar(s.startAngle), end = s.centre + s.radius * polar(s.endAngle);
        return arcBetween(moved(start, startMoves), moved(end, endMoves), s);
    }
    Shape operator()(EllipticalArcShape s) const {
        if (has(grips, 0))
            return whole(s);
        if (has(grips, 1))
            s.startParam = slid(s, s.startParam);
        if (has(grips, 2))
            s.endParam = slid(s, s.endParam);
        if (s.endParam <= s.startParam)
            s.endParam += kTurn;
        if (s.endParam > s.startParam + kTurn)
            s.endParam -= kTurn;
        return s;
    }
    Shape operator()(const XlineShape& s) const {
        return has(grips, 0) ? whole(s) : Shape(XlineShape{s.point, turned(s.direction)});
    }
    Shape operator()(const RayShape& s) const {
        return has(grips, 0) ? whole(s) : Shape(RayShape{s.point, turned(s.direction)});
    }
    Shape operator()(SplineShape s) const {
        moveAll(s.control);
        return s;
    }
    Shape operator()(PolylineShape s) const {
        moveAll(s.vertices);
        return s;
    }
    template <class Placed>
    Shape operator()(const Placed& s) const {
        return whole(s);
    }

    /// The eccentric angle of the direction in which an end goes, by half a turn at most.
    double slid(const EllipticalArcShape& s, double param) const {
        const Vec2 out = pointAt(Shape(s), param) + by - s.centre;
        const Vec2 minor = minorAxis(s.majorAxis, s.ratio);
        const double angle =
            std::atan2(dot(out, minor) / dot(minor, minor), dot(out, s.majorAxis) / dot(s.majorAxis, s.majorAxis));
        return angle + kTurn * std::round((param - angle) / kTurn);
    }
    void moveAll(std::vector<Vec2>& points) const {
        for (const int grip : grips)
            points[static_cast<std::size_t>(grip)] = points[static_cast<std::size_t>(grip)] + by;
    }
    Vec2 turned(Vec2 direction) const {
        const Vec2 ahead = unit(direction) + (has(grips, 1) ? by : -by);
        return unit(ahead);
    }
};

struct PointGrips {
    std::vector<Grip> operator()(const LineShape& s) const { return numbered({s.start, s.end}); }
    std::vector<Grip> operator()(const ArcShape& s) const {
        return numbered({s.centre + s.radius * polar(s.startAngle), s.centre + s.radius * polar(s.endAngle)});
    }
    std::vector<Grip> operator()(const EllipticalArcShape& s) const {
        return numbered({s.centre, pointAt(Shape(s), s.startParam), pointAt(Shape(s), s.endParam)});
    }
    std::vector<Grip> operator()(const PointShape& s) const { return numbered({s.position}); }
    std::vector<Grip> operator()(const TextShape& s) const { return numbered({s.position}); }
    std::vector<Grip> operator()(const RayShape& s) const { return numbered({s.point, s.point + unit(s.direction)}); }
    std::vector<Grip> operator()(const XlineShape& s) const {
        return numbered({s.point, s.point + unit(s.direction), s.point - unit(s.direction)});
    }
    std::vector<Grip> operator()(const SplineShape& s) const { return numbered(s.control); }
    std::vector<Grip> operator()(const PolylineShape& s) const { return numbered(s.vertices); }
    template <class Round>
    std::vector<Grip> operator()(const Round& s) const {
        return numbered({s.centre});
    }
};

std::vector<int> splineGrips(const SplineShape& spline, const Place& place) {
    if (place.kind == PlaceKind::control)
        return {place.index};
    const std::optional<Vec2> point = pointAt(spline, place);
    const int grip = place.kind == PlaceKind::start ? 0 : static_cast<int>(spline.control.size()) - 1;
    // Only a clamped spline starts and ends in control points.
    if (!point || distance(*point, spline.control[static_cast<std::size_t>(grip)]) > kSamePoint)
        return {};
    return {grip};
}

std::vector<int> polylineGrips(const PolylineShape& polyline, const Place& place) {
    const int start = place.index;
    const int end = static_cast<int>(segmentEndVertex(polyline, static_cast<std::size_t>(start)));
    switch (place.kind) {
        case PlaceKind::segmentStart:
            return {start};
        case PlaceKind::segmentEnd:
            return {end};
        case PlaceKind::segment:
        case PlaceKind::segmentMid:
            return {start, end};
        default:
            return {};
    }
}

/// Of entities with a fixed number of grips.
std::vector<int> plainGrips(const Shape& shape, PlaceKind kind) {
    const bool isLine = std::holds_alternative<LineShape>(shape), isArc = std::holds_alternative<ArcShape>(shape);
    const bool isEllipse = std::holds_alternative<EllipticalArcShape>(shape);
    switch (kind) {
        case PlaceKind::start:
            return {isEllipse ? 1 : 0};
        case PlaceKind::end:
            return {isEllipse ? 2 : 1};
        case PlaceKind::mid:
            return isLine ? std::vector{2} : std::vector<int>();
        case PlaceKind::centre:
            return {isArc ? 2 : 0};
        default:
            return {};
    }
}

}  // namespace

std::vector<Grip> pointGrips(const Shape& shape) {
    return std::visit(PointGrips(), shape);
}

std::vector<Grip> windowGrips(const Shape& shape) {
    std::vector<Grip> grips = pointGrips(shape);
    if (std::holds_alternative<EllipticalArcShape>(shape))
        grips.resize(1);
    return grips;
}

std::vector<int> gripsAt(const Shape& shape, const Place& place) {
    if (!hasPlace(shape, place))
        return {};
    if (const auto* spline = std::get_if<SplineShape>(&shape))
        return splineGrips(*spline, place);
    if (const auto* polyline = std::get_if<PolylineShape>(&shape))
        return polylineGrips(*polyline, place);
    return plainGrips(shape, place.kind);
}

std::vector<int> completed(const Shape& shape, std::vector<int> grips) {
    if (std::holds_alternative<ArcShape>(shape) && grips.size() == 2)
        grips.push_back(2);
    return grips;
}

Shape withGripsMoved(const Shape& shape, const std::vector<int>& grips, Vec2 by) {
    return std::visit(GripMover{grips, by}, shape);
}

}  // namespace holdfast::editing
