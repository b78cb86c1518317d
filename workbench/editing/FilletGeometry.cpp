#include "workbench/editing/FilletGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "workbench/editing/EditContext.h"
#include "workbench/geometry/Geometry.h"
#include "workbench/geometry/Vec.h"

namespace holdfast {

namespace {

/// Where the two curves may come to an end, and which of their ends come there.
struct Joint {
    double paramA = 0.0;
    double paramB = 0.0;
    CurveEnd endA = CurveEnd::end;
    CurveEnd endB = CurveEnd::end;
    std::optional<TangentCircle> circle{};
};

std::string spokenNumber(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

Vec2 middleOf(const Shape& shape) {
    const ParamRange range = paramRange(shape);
    const double first = std::isfinite(range.first) ? range.first : -1.0;
    return pointAt(shape, 0.5 * (first + (std::isfinite(range.last) ? range.last : first + 2.0)));
}

bool isOnCurve(const Shape& shape, double param) {
    const ParamRange range = paramRange(shape);
    const Vec2 point = pointAt(shape, param);
    if (std::isfinite(range.first) && std::isfinite(range.last))
        return nearestOn(shape, point).distance <= 1e-9 * (1.0 + boundsOf(shape).diagonal());
    return param >= range.first && param <= range.last;
}

/// The ends that a fillet may move.
std::vector<Vec2> movableEnds(const FilletSide& side) {
    std::vector<Vec2> ends;
    for (const CurveEnd end : {CurveEnd::start, CurveEnd::end}) {
        const std::optional<Vec2> point = end == CurveEnd::start ? startPoint(side.shape) : endPoint(side.shape);
        if (point && side.moves.value_or(end) == end)
            ends.push_back(*point);
    }
    return ends;
}

/// The middle between the ends of both curves that are closest to each other; none when a curve has no end.
std::optional<Vec2> cornerOf(const FilletSide& a, const FilletSide& b) {
    std::optional<Vec2> corner;
    double least = std::numeric_limits<double>::infinity();
    for (const Vec2 endA : movableEnds(a))
        for (const Vec2 endB : movableEnds(b))
            if (distance(endA, endB) < least) {
                least = distance(endA, endB);
                corner = 0.5 * (endA + endB);
            }
    return corner;
}

/// The smaller, the better; infinite for a joint that is not to be had.
double farness(const FilletSide& a, const FilletSide& b, const Joint& joint) {
    const Vec2 pointA = pointAt(a.shape, joint.paramA), pointB = pointAt(b.shape, joint.paramB);
    const std::optional<Vec2> corner = cornerOf(a, b);
    if (!a.pick && corner && isOnCurve(a.shape, joint.paramA) && isOnCurve(b.shape, joint.paramB))
        return distance(pointA, *corner) + distance(pointB, *corner);
    const double far =
        distance(pointA, a.pick.value_or(middleOf(a.shape))) + distance(pointB, b.pick.value_or(middleOf(b.shape)));
    // Whatever lies on both curves goes before what would lengthen one.
    return a.pick ? far : far + 1e12;
}

/// The end that goes when the curve is left at a parameter in a direction.
CurveEnd endTowards(const Shape& shape, double param, Vec2 direction) {
    return dot(tangentAt(shape, param), direction) > 0.0 ? CurveEnd::end : CurveEnd::start;
}

/// In a sharp corner the part stays on which the pick, or the middle, lies.
CurveEnd endBeyondCorner(const FilletSide& side, double param) {
    if (side.moves)
        return *side.moves;
    const Vec2 pick = side.pick.value_or(middleOf(side.shape));
    return nearestOn(side.shape, pick).param < param ? CurveEnd::end : CurveEnd::start;
}

Joint cornerAt(const FilletSide& a, const FilletSide& b, const Crossing& crossing) {
    return {crossing.paramA, crossing.paramB, endBeyondCorner(a, crossing.paramA), endBeyondCorner(b, crossing.paramB)};
}

/// The arc leaves each curve in the direction in which the kept part arrives.
Joint arcAt(const FilletSide& a, const FilletSide& b, const TangentCircle& circle) {
    const Vec2 across = circle.pointB - circle.pointA;
    return {circle.paramA, circle.paramB, endTowards(a.shape, circle.paramA, across),
            endTowards(b.shape, circle.paramB, -across), circle};
}

bool moves(const FilletSide& side, CurveEnd end) {
    return side.moves.value_or(end) == end;
}

std::vector<Joint> jointsOf(const FilletSide& a, const FilletSide& b, double radius) {
    std::vector<Joint> joints;
    if (radius == 0.0)
        for (const Crossing& crossing : intersect(a.shape, b.shape, Extent::carrier, Extent::carrier))
            joints.push_back(cornerAt(a, b, crossing));
    else
        for (const TangentCircle& circle : tangentCircles(a.shape, b.shape, radius))
            joints.push_back(arcAt(a, b, circle));
    std::erase_if(joints, [&](const Joint& joint) { return !moves(a, joint.endA) || !moves(b, joint.endB); });
    return joints;
}

std::string noJoint(const FilletSide& a, const FilletSide& b, double radius) {
    return radius == 0.0 ? a.name + " and " + b.name + " do not meet even when prolonged; give a radius above 0"
                         : "no arc of radius " + spokenNumber(radius) + " touches both " + a.name + " and " + b.name +
                               "; choose another radius or curves that are not parallel";
}

Joint bestJoint(const FilletSide& a, const FilletSide& b, double radius) {
    std::vector<Joint> joints = jointsOf(a, b, radius);
    if (joints.empty())
        throw EditError(noJoint(a, b, radius));
    std::erase_if(joints, [&](const Joint& joint) {
        return (!a.mayGrow && !isOnCurve(a.shape, joint.paramA)) || (!b.mayGrow && !isOnCurve(b.shape, joint.paramB));
    });
    if (joints.empty())
        throw EditError("an arc of radius " + spokenNumber(radius) + " does not fit between " + a.name + " and " +
                        b.name + "; choose a smaller radius");
    return *std::min_element(joints.begin(), joints.end(), [&](const Joint& left, const Joint& right) {
        return farness(a, b, left) < farness(a, b, right);
    });
}

[[noreturn]] void refuseSwallowed(const std::string& name, double radius) {
    if (radius == 0.0)
        throw EditError("a sharp corner there would leave nothing of " + name + "; choose other curves or points");
    throw EditError("a fillet of radius " + spokenNumber(radius) + " would leave nothing of " + name +
                    "; choose a smaller radius");
}

/// The curve with the end that the fillet moves at a parameter.
Shape endedAt(const FilletSide& side, double param, CurveEnd end, double radius) {
    const ParamRange range = paramRange(side.shape);
    if (periodOf(side.shape) > 0.0)
        return side.shape;
    const Vec2 point = pointAt(side.shape, param);
    const auto still = end == CurveEnd::start ? endPoint(side.shape) : startPoint(side.shape);
    const auto moving = end == CurveEnd::start ? startPoint(side.shape) : endPoint(side.shape);
    const bool turns =
        std::holds_alternative<ArcShape>(side.shape) || std::holds_alternative<EllipticalArcShape>(side.shape);
    // An arc can always be led on to its own other end, which nobody means who picks a fillet beyond that end.
    const bool beyond = turns ? !isOnCurve(side.shape, param) && distance(point, *still) < distance(point, *moving)
                        : end == CurveEnd::start ? param >= range.last
                                                 : param <= range.first;
    if (beyond || (still && distance(point, *still) == 0.0))
        refuseSwallowed(side.name, radius);
    return withEndAt(side.shape, end, param);
}

}  // namespace

CurveFillet filletCurves(const FilletSide& a, const FilletSide& b, double radius) {
    const Joint joint = bestJoint(a, b, radius);
    CurveFillet fillet{.first = endedAt(a, joint.paramA, joint.endA, radius),
                       .second = endedAt(b, joint.paramB, joint.endB, radius),
                       .firstEnd = joint.endA,
                       .secondEnd = joint.endB};
    if (joint.circle)
        fillet.arc = filletArc(*joint.circle);
    return fillet;
}

}  // namespace holdfast
