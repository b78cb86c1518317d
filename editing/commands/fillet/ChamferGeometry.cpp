#include "editing/commands/fillet/ChamferGeometry.h"

#include <cmath>

#include "editing/EditContext.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Geometry.h"

namespace holdfast::editing {

namespace {

/// A construction line that ends in the corner has become a ray, which begins there.
CurveEnd cornerEnd(const Shape& shape, CurveEnd end) {
    return std::holds_alternative<RayShape>(shape) ? CurveEnd::start : end;
}

Vec2 endPointOf(const Shape& shape, CurveEnd end) {
    return (end == CurveEnd::start ? startPoint(shape) : endPoint(shape)).value();
}

void refuseClosed(const FilletSide& side) {
    if (periodOf(side.shape) > 0.0)
        throw EditError(side.name + " is closed and has no end to chamfer; break it first");
}

}  // namespace

Shape cutBack(const std::string& name, const Shape& curve, CurveEnd end, double by) {
    const double length = lengthOf(curve);
    if (std::isfinite(length) && length - by <= kHolds * length)
        throw EditError("a chamfer of " + spoken(by) + " would leave nothing of " + name + ", which is " +
                        spoken(length) + " long up to the corner; choose a smaller distance");
    const ParamRange range = paramRange(curve);
    const bool atStart = end == CurveEnd::start;
    return withEndAt(curve, end, paramAtDistance(curve, atStart ? range.first : range.last, atStart ? by : -by));
}

CurveChamfer chamferCurves(const FilletSide& a, const FilletSide& b, double firstLength, double secondLength) {
    refuseClosed(a);
    refuseClosed(b);
    refuseSmooth(a, b);
    const std::optional<CurveFillet> corner = sharpCorner(a, b);
    if (!corner)
        throw EditError(a.name + " and " + b.name + " do not meet even when prolonged; there is no corner to chamfer");
    CurveChamfer chamfer{.first = {}, .second = {}, .line = {}};
    chamfer.firstEnd = cornerEnd(corner->first, corner->firstEnd);
    chamfer.secondEnd = cornerEnd(corner->second, corner->secondEnd);
    chamfer.first = cutBack(a.name, corner->first, chamfer.firstEnd, firstLength);
    chamfer.second = cutBack(b.name, corner->second, chamfer.secondEnd, secondLength);
    chamfer.line = {endPointOf(chamfer.first, chamfer.firstEnd), endPointOf(chamfer.second, chamfer.secondEnd)};
    return chamfer;
}

}  // namespace holdfast::editing
