#include "editing/commands/values/Lengthening.h"

#include <algorithm>
#include <cmath>

#include "editing/EditContext.h"
#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/construction/Extending.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::editing {

namespace {

/// Away from the curve: by how much parameters grow towards the end.
double outward(CurveEnd end) {
    return end == CurveEnd::end ? 1.0 : -1.0;
}

double endParam(const Shape& curve, CurveEnd end) {
    const ParamRange range = paramRange(curve);
    return end == CurveEnd::end ? range.last : range.first;
}

/// Of a polyline only the outermost segment changes: segments that vanished would take their constraints along.
double polylineParam(const PolylineShape& polyline, const std::string& name, CurveEnd end, double by) {
    const double from = endParam(polyline, end);
    const double segment = std::abs(lengthBetween(polyline, from - outward(end), from));
    if (by <= -segment)
        throw EditError("the outermost segment of " + name + " is only " + spoken(segment) +
                        " long; trim it to take more away");
    return from + outward(end) * by / segment;
}

/// The length behind the end of a spline is only known when it is there.
double splineParam(const SplineShape& spline, CurveEnd end, double by) {
    const ParamRange range = paramRange(spline);
    const double from = endParam(spline, end);
    if (by <= 0.0)
        return paramAtDistance(spline, from, outward(end) * by);
    double reach = (range.last - range.first) * std::max(1.0, by / lengthOf(spline)) / 8.0;
    for (int doublings = 0; doublings < 60; ++doublings, reach *= 2.0) {
        const Shape longer = withEndAt(spline, end, from + outward(end) * reach);
        if (std::abs(lengthBetween(longer, from, endParam(longer, end))) >= by)
            return paramAtDistance(longer, from, outward(end) * by);
    }
    throw GeometryError("the curve of its outermost span does not become so long");
}

double paramOfEnd(const Shape& curve, const std::string& name, CurveEnd end, double by) {
    if (const auto* polyline = std::get_if<PolylineShape>(&curve))
        return polylineParam(*polyline, name, end, by);
    if (const auto* spline = std::get_if<SplineShape>(&curve))
        return splineParam(*spline, end, by);
    return paramAtDistance(curve, endParam(curve, end), outward(end) * by);
}

void refuseFullTurn(const Shape& curve, const std::string& name, CurveEnd end, double param) {
    if (!std::holds_alternative<ArcShape>(curve) && !std::holds_alternative<EllipticalArcShape>(curve))
        return;
    const ParamRange range = paramRange(curve);
    if (std::abs(param - (end == CurveEnd::end ? range.first : range.last)) >= kTurn)
        throw EditError(name + " would become a full turn or more; lengthen it by less");
}

void refuseWithoutEnds(const Shape& curve, const std::string& name) {
    refuseNoCurve(name, curve, "lengthened");
    if (periodOf(curve) > 0.0)
        throw EditError(name + " is closed and has no end to move; break it first");
    if (!std::isfinite(lengthOf(curve)))
        throw EditError(name + " has no length, as it is unbounded; break it first");
}

}  // namespace

Shape lengthened(const Shape& curve, const std::string& name, CurveEnd end, double by) {
    refuseWithoutEnds(curve, name);
    const double length = lengthOf(curve);
    if (!(length + by > kSamePoint * length))
        throw EditError("nothing of " + name + " would be left, it is only " + spoken(length) + " long");
    try {
        const double param = paramOfEnd(curve, name, end, by);
        refuseFullTurn(curve, name, end, param);
        return withEndAt(curve, end, param);
    } catch (const GeometryError& error) {
        throw EditError(name + " cannot be lengthened by " + spoken(by) + ": " + error.what());
    }
}

}  // namespace holdfast::editing
