#include "geometry/construction/Extending.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/construction/SplineEnds.h"
#include "geometry/construction/Splitting.h"
#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::geometry {
namespace {

[[noreturn]] void refuse(const Shape& curve, const std::string& why) {
    throw GeometryError(std::string(kindName(curve)) + ": " + why);
}

bool isArc(const Shape& curve) {
    return std::holds_alternative<ArcShape>(curve) || std::holds_alternative<EllipticalArcShape>(curve);
}

/// An arc's parameter as the new value of one end: ahead of the start by up to a turn, or behind the end.
double arcEndParam(const ParamRange& range, CurveEnd end, double param) {
    if (end == CurveEnd::end) {
        return param - std::ceil((param - range.first) / kTurn - 1.0) * kTurn;
    }
    return param - std::floor((param - range.last) / kTurn + 1.0) * kTurn;
}

ArcShape withRange(ArcShape arc, const ParamRange& range) {
    arc.startAngle = range.first;
    arc.endAngle = range.last;
    return arc;
}

EllipticalArcShape withRange(EllipticalArcShape arc, const ParamRange& range) {
    arc.startParam = range.first;
    arc.endParam = range.last;
    return arc;
}

template <class Arc>
Shape arcWithEndAt(const Arc& arc, CurveEnd end, double param) {
    ParamRange range = paramRange(arc);
    (end == CurveEnd::end ? range.last : range.first) = arcEndParam(range, end, param);
    if (!(range.first < range.last)) {
        refuse(arc, "nothing would be left of it");
    }
    return withRange(arc, range);
}

LineShape lineWithEndAt(const LineShape& line, CurveEnd end, double param) {
    const bool isEnd = end == CurveEnd::end;
    if (isEnd ? !(param > 0.0) : !(param < distance(line.start, line.end))) {
        refuse(line, "nothing would be left of it");
    }
    const Vec2 point = pointAt(line, param);
    return isEnd ? LineShape{line.start, point} : LineShape{point, line.end};
}

/// The open end of the last segment moved along it.
PolylineShape withLastVertexAt(PolylineShape polyline, double param) {
    const double count = static_cast<double>(segmentCount(polyline));
    if (param <= count - 1.0) {
        return polylinePart(polyline, 0.0, param);
    }
    const std::size_t last = polyline.vertices.size() - 1;
    const double angle = angleOfBulge(polyline.bulges[last - 1]) * (param - count + 1.0);
    if (!(std::abs(angle) < kTurn * (1.0 - kSamePoint))) {
        refuse(polyline, "an arc segment would become a full turn or more");
    }
    const Vec2 point = pointAt(polyline, param);
    polyline.vertices[last] = point;
    polyline.bulges[last - 1] = bulgeOfAngle(angle);
    return polyline;
}

PolylineShape polylineWithEndAt(const PolylineShape& polyline, CurveEnd end, double param) {
    const double count = static_cast<double>(segmentCount(polyline));
    if (end == CurveEnd::end ? !(param > 0.0) : !(param < count)) {
        refuse(polyline, "nothing would be left of it");
    }
    if (end == CurveEnd::end) {
        return withLastVertexAt(polyline, param);
    }
    return reversedPolyline(withLastVertexAt(reversedPolyline(polyline), count - param));
}

/// The outermost segment of a polyline, so that the end in question is its end.
PolylineShape segmentOutwards(const PolylineShape& polyline, CurveEnd end) {
    const PolylineShape outwards = end == CurveEnd::end ? polyline : reversedPolyline(polyline);
    const std::size_t last = outwards.vertices.size() - 1;
    return {{outwards.vertices[last - 1], outwards.vertices[last]}, {outwards.bulges[last - 1], 0.0}, {0, 0}, false};
}

/// The parameter on the whole polyline for one on that segment.
double fromSegmentOutwards(const PolylineShape& polyline, CurveEnd end, double param) {
    const double count = static_cast<double>(segmentCount(polyline));
    return end == CurveEnd::end ? count - 1.0 + param : 1.0 - param;
}

/// A crossing in the order in which the moving end comes by.
struct Ahead {
    double distance;  ///< how far the parameter has to move
    Extension extension;
};

/// The nearest crossing ahead of the end; `reachOf` tells how far the parameter has to move to it.
template <class ReachOf>
std::optional<Extension> nearestAhead(const std::vector<Crossing>& crossings, double atEnd, const ReachOf& reachOf) {
    std::optional<Ahead> nearest;
    for (const Crossing& crossing : crossings) {
        const double reach = reachOf(crossing.paramA);
        if (reach > atEnd && (!nearest || reach < nearest->distance)) {
            nearest = Ahead{reach, {crossing.point, crossing.paramA, crossing.paramB}};
        }
    }
    return nearest ? std::optional(nearest->extension) : std::nullopt;
}

std::optional<Extension> lineExtension(const Shape& curve, CurveEnd end, const Shape& boundary, Extent extent) {
    const ParamRange range = paramRange(curve);
    const double size = std::isfinite(range.last) ? range.last : 1.0;
    return nearestAhead(intersect(curve, boundary, Extent::carrier, extent), kSamePoint * size,
                        [&](double param) { return end == CurveEnd::end ? param - range.last : range.first - param; });
}

std::optional<Extension> arcExtension(const Shape& curve, CurveEnd end, const Shape& boundary, Extent extent) {
    const ParamRange range = paramRange(curve);
    // Once round it would come to its own other end.
    auto found = nearestAhead(intersect(curve, boundary, Extent::carrier, extent), kSamePoint, [&](double param) {
        const double turned = arcEndParam(range, end, param);
        const double reach = end == CurveEnd::end ? turned - range.last : range.first - turned;
        return range.last - range.first + reach < (1.0 - kSamePoint) * kTurn ? reach : 0.0;
    });
    if (found) {
        found->param = arcEndParam(range, end, found->param);
    }
    return found;
}

std::optional<Extension> polylineExtension(const PolylineShape& polyline, CurveEnd end, const Shape& boundary,
                                           Extent extent) {
    const PolylineShape segment = segmentOutwards(polyline, end);
    const double angle = std::abs(angleOfBulge(segment.bulges.front()));
    auto found = nearestAhead(intersect(segment, boundary, Extent::carrier, extent), kSamePoint, [angle](double param) {
        return param * angle < (1.0 - kSamePoint) * kTurn ? param - 1.0 : 0.0;
    });
    if (found) {
        found->param = fromSegmentOutwards(polyline, end, found->param);
    }
    return found;
}

std::optional<Extension> splineExtension(const SplineShape& spline, CurveEnd end, const Shape& boundary,
                                         Extent extent) {
    const ParamRange range = paramRange(spline);
    std::optional<Extension> found;
    followBeyond(spline, end, [&](const SplineShape& stretch) {
        const double width = stretch.knots.back() - stretch.knots.front();
        found =
            nearestAhead(intersect(stretch, boundary, Extent::bounded, extent), kSamePoint * width,
                         [&](double param) { return end == CurveEnd::end ? param - range.last : range.first - param; });
        return found.has_value();
    });
    return found;
}

void requireEnd(const Shape& curve, CurveEnd end) {
    requireSound(curve);
    const ParamRange range = paramRange(curve);
    if (periodOf(curve) > 0.0) {
        refuse(curve, "is closed and has no end to extend");
    }
    if (!std::isfinite(end == CurveEnd::end ? range.last : range.first)) {
        refuse(curve, "has no end on that side");
    }
}

}  // namespace

Shape withEndAt(const Shape& curve, CurveEnd end, double param) {
    requireSound(curve);
    if (!std::isfinite(param)) {
        refuse(curve, "the parameter is not a finite number");
    }
    if (periodOf(curve) > 0.0) {
        refuse(curve, "is closed and has no end to move");
    }
    if (const auto* line = std::get_if<LineShape>(&curve)) {
        return lineWithEndAt(*line, end, param);
    }
    if (const auto* arc = std::get_if<ArcShape>(&curve)) {
        return arcWithEndAt(*arc, end, param);
    }
    if (const auto* arc = std::get_if<EllipticalArcShape>(&curve)) {
        return arcWithEndAt(*arc, end, param);
    }
    if (const auto* polyline = std::get_if<PolylineShape>(&curve)) {
        return polylineWithEndAt(*polyline, end, param);
    }
    if (const auto* spline = std::get_if<SplineShape>(&curve)) {
        return splineWithEndAt(*spline, end, param);
    }
    const auto* ray = std::get_if<RayShape>(&curve);
    if (ray != nullptr && end == CurveEnd::start) {
        return RayShape{pointAt(curve, param), ray->direction};
    }
    const ParamRange range = paramRange(curve);
    return end == CurveEnd::end ? partOf(curve, range.first, param) : partOf(curve, param, range.last);
}

std::optional<Extension> extensionTo(const Shape& curve, CurveEnd end, const Shape& boundary, Extent boundaryExtent) {
    requireEnd(curve, end);
    if (const auto* spline = std::get_if<SplineShape>(&curve)) {
        return splineExtension(*spline, end, boundary, boundaryExtent);
    }
    if (const auto* polyline = std::get_if<PolylineShape>(&curve)) {
        return polylineExtension(*polyline, end, boundary, boundaryExtent);
    }
    return isArc(curve) ? arcExtension(curve, end, boundary, boundaryExtent)
                        : lineExtension(curve, end, boundary, boundaryExtent);
}

Shape extendedTo(const Shape& curve, CurveEnd end, Vec2 point) {
    requireEnd(curve, end);
    if (const auto* spline = std::get_if<SplineShape>(&curve)) {
        return splineExtendedTo(*spline, end, point);
    }
    const auto* polyline = std::get_if<PolylineShape>(&curve);
    const Shape outermost = polyline != nullptr ? Shape(segmentOutwards(*polyline, end)) : curve;
    const Box box = boundsOf(outermost);
    const auto param =
        paramAtPoint(outermost, point, kHolds * (box.isBounded() ? box.diagonal() : 1.0), Extent::carrier);
    if (!param) {
        refuse(curve, "the point does not lie on the curve or where it goes on");
    }
    return withEndAt(curve, end, polyline != nullptr ? fromSegmentOutwards(*polyline, end, *param) : *param);
}

}  // namespace holdfast::geometry
