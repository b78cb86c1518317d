#include "editing/commands/fillet/FilletGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "editing/EditContext.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Geometry.h"

namespace holdfast::editing {

namespace {

/// Radians by which a curve may turn where another one goes on from it and there is no corner: a polyline of six-digit
/// coordinates that was drawn straight is bent as much. Half or twice of it moves that limit and nothing else.
constexpr double kStraightOn = 1e-6;

/// Where the two curves may come to an end, and which of their ends come there.
struct Joint {
    double paramA = 0.0;
    double paramB = 0.0;
    CurveEnd endA = CurveEnd::end;
    CurveEnd endB = CurveEnd::end;
    std::optional<ArcShape> arc{};
};

Vec2 middleOf(const Shape& shape) {
    const ParamRange range = paramRange(shape);
    const double first = std::isfinite(range.first) ? range.first : -1.0;
    return pointAt(shape, 0.5 * (first + (std::isfinite(range.last) ? range.last : first + 2.0)));
}

bool isOnCurve(const Shape& shape, double param) {
    const ParamRange range = paramRange(shape);
    const Vec2 point = pointAt(shape, param);
    if (std::isfinite(range.first) && std::isfinite(range.last))
        return nearestOn(shape, point).distance <= kSamePoint * (1.0 + boundsOf(shape).diagonal());
    return param >= range.first && param <= range.last;
}

std::optional<Vec2> pointOf(const Shape& shape, CurveEnd end) {
    return end == CurveEnd::start ? startPoint(shape) : endPoint(shape);
}

/// The direction in which a curve leaves its end; the end exists.
Vec2 outwards(const Shape& shape, CurveEnd end) {
    const ParamRange range = paramRange(shape);
    return end == CurveEnd::start ? -tangentAt(shape, range.first) : tangentAt(shape, range.last);
}

/// The ends that a fillet may move.
std::vector<Vec2> movableEnds(const FilletSide& side) {
    std::vector<Vec2> ends;
    for (const CurveEnd end : {CurveEnd::start, CurveEnd::end}) {
        const std::optional<Vec2> point = pointOf(side.shape, end);
        if (point && side.moves.value_or(end) == end)
            ends.push_back(*point);
    }
    return ends;
}

/// The middle between the ends of both curves that are closest to each other; none when a curve has no end.
std::optional<Vec2> middleOfEnds(const FilletSide& a, const FilletSide& b) {
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
    const std::optional<Vec2> corner = middleOfEnds(a, b);
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
            endTowards(b.shape, circle.paramB, -across), filletArc(circle)};
}

/// How far apart two parallel lines lie, whose directions differ by next to nothing.
std::optional<double> gapOfParallels(const Shape& a, const Shape& b) {
    if (!isStraight(a) || !isStraight(b))
        return std::nullopt;
    const Vec2 along = tangentAt(a, 0.0);
    const double gap = std::abs(cross(along, pointAt(b, 0.0) - pointAt(a, 0.0)));
    const bool isParallel = std::abs(cross(along, tangentAt(b, 0.0))) <= kSameDirection;
    return isParallel && gap > kSamePoint * (1.0 + norm(pointAt(a, 0.0))) ? std::optional(gap) : std::nullopt;
}

bool hasEnd(const Shape& shape) {
    return pointOf(shape, CurveEnd::start) || pointOf(shape, CurveEnd::end);
}

/// The half circle beyond one end of a line, which stays where it is; the other line comes to lie beside it.
Joint halfCircleAt(const Shape& a, const Shape& b, CurveEnd end) {
    const Vec2 point = *pointOf(a, end), out = outwards(a, end);
    const double paramB = dot(tangentAt(b, 0.0), point - pointAt(b, 0.0));
    const Vec2 across = pointAt(b, paramB) - point;
    const double middle = std::atan2(out.y, out.x), quarter = kQuarterTurn;
    const ParamRange range = paramRange(a);
    return {end == CurveEnd::start ? range.first : range.last, paramB, end, endTowards(b, paramB, out),
            ArcShape{point + 0.5 * across, 0.5 * norm(across), middle - quarter, middle + quarter}};
}

/// Joins parallel lines, at the ends of the first that has any, when the radius is half their distance, as far as
/// people write numbers.
std::vector<Joint> halfCircles(const Shape& a, const Shape& b, double radius) {
    const std::optional<double> gap = gapOfParallels(a, b);
    std::vector<Joint> joints;
    if (!gap || std::abs(*gap - 2.0 * radius) > kHolds * *gap)
        return joints;
    const bool atFirst = hasEnd(a);
    for (const CurveEnd end : {CurveEnd::start, CurveEnd::end}) {
        if (!pointOf(atFirst ? a : b, end))
            continue;
        Joint joint = atFirst ? halfCircleAt(a, b, end) : halfCircleAt(b, a, end);
        if (!atFirst) {
            std::swap(joint.paramA, joint.paramB);
            std::swap(joint.endA, joint.endB);
        }
        joints.push_back(joint);
    }
    return joints;
}

bool moves(const FilletSide& side, CurveEnd end) {
    return side.moves.value_or(end) == end;
}

std::vector<Joint> jointsOf(const FilletSide& a, const FilletSide& b, double radius) {
    std::vector<Joint> joints = halfCircles(a.shape, b.shape, radius);
    const bool meet = !gapOfParallels(a.shape, b.shape);  // where parallels meet is rounding
    if (meet && radius == 0.0)
        for (const Crossing& crossing : intersect(a.shape, b.shape, Extent::carrier, Extent::carrier))
            joints.push_back(cornerAt(a, b, crossing));
    else if (meet)
        for (const TangentCircle& circle : tangentCircles(a.shape, b.shape, radius))
            // Where the curves run smoothly into each other an arc has no length, or so little that it turns nowhere.
            if (distance(circle.pointA, circle.pointB) > std::max(kSamePoint * (1.0 + radius), kStraightOn * radius))
                joints.push_back(arcAt(a, b, circle));
    std::erase_if(joints, [&](const Joint& joint) { return !moves(a, joint.endA) || !moves(b, joint.endB); });
    return joints;
}

/// The ends of both curves lie on each other there, and the one curve goes on in the direction of the other.
std::optional<Vec2> smoothJoint(const FilletSide& a, const FilletSide& b, double smooth) {
    for (const CurveEnd endA : {CurveEnd::start, CurveEnd::end})
        for (const CurveEnd endB : {CurveEnd::start, CurveEnd::end}) {
            const auto pointA = pointOf(a.shape, endA), pointB = pointOf(b.shape, endB);
            if (!pointA || !pointB || distance(*pointA, *pointB) > kHolds * (1.0 + norm(*pointA)))
                continue;
            const Vec2 outA = outwards(a.shape, endA), outB = outwards(b.shape, endB);
            if (std::abs(cross(outA, outB)) <= smooth && dot(outA, outB) < 0.0)
                return pointA;
        }
    return std::nullopt;
}

[[noreturn]] void refuseCornerless(const FilletSide& a, const FilletSide& b, Vec2 joint) {
    throw EditError(a.name + " and " + b.name + " run smoothly into each other in " + spoken(joint) +
                    "; there is no corner to " + a.verb);
}

/// Curves that run smoothly into each other have no corner, whatever else a fillet of them comes to.
[[noreturn]] void refuse(const FilletSide& a, const FilletSide& b, const std::string& reason) {
    constexpr double kSmooth = 1e-3;  // radians: what failed there failed because of that
    if (const std::optional<Vec2> joint = smoothJoint(a, b, kSmooth))
        refuseCornerless(a, b, *joint);
    throw EditError(reason);
}

std::string noJoint(const FilletSide& a, const FilletSide& b, double radius) {
    const std::optional<double> gap = gapOfParallels(a.shape, b.shape);
    if (gap && (hasEnd(a.shape) || hasEnd(b.shape)))
        return a.name + " and " + b.name + " are parallel; only a half circle joins them, with radius " +
               spoken(0.5 * *gap);
    return radius == 0.0 ? a.name + " and " + b.name + " do not meet even when prolonged; give a radius above 0"
                         : "no arc of radius " + spoken(radius) + " touches both " + a.name + " and " + b.name +
                               "; choose another radius or curves that are not parallel";
}

Joint bestJoint(const FilletSide& a, const FilletSide& b, double radius) {
    std::vector<Joint> joints = jointsOf(a, b, radius);
    if (joints.empty())
        refuse(a, b, noJoint(a, b, radius));
    std::erase_if(joints, [&](const Joint& joint) {
        return (!a.mayGrow && !isOnCurve(a.shape, joint.paramA)) || (!b.mayGrow && !isOnCurve(b.shape, joint.paramB));
    });
    if (joints.empty())
        refuse(a, b,
               "an arc of radius " + spoken(radius) + " does not fit between " + a.name + " and " + b.name +
                   "; choose a smaller radius");
    return *std::min_element(joints.begin(), joints.end(), [&](const Joint& left, const Joint& right) {
        return farness(a, b, left) < farness(a, b, right);
    });
}

/// True when nothing is left of a curve whose end moves to a parameter.
bool isSwallowed(const Shape& shape, double param, CurveEnd end) {
    if (periodOf(shape) > 0.0)
        return false;
    const Vec2 point = pointAt(shape, param);
    const auto still = pointOf(shape, end == CurveEnd::start ? CurveEnd::end : CurveEnd::start);
    const double size = boundsOf(shape).diagonal();
    if (still && distance(point, *still) <= (std::isfinite(size) ? kSamePoint * size : 0.0))
        return true;
    // An arc can always be led on to its own other end, which nobody means who picks a fillet beyond that end.
    if (std::holds_alternative<ArcShape>(shape) || std::holds_alternative<EllipticalArcShape>(shape))
        return !isOnCurve(shape, param) && distance(point, *still) < distance(point, *pointOf(shape, end));
    return end == CurveEnd::start ? param >= paramRange(shape).last : param <= paramRange(shape).first;
}

std::string swallowing(const std::string& name, double radius) {
    return radius == 0.0 ? "a sharp corner there would leave nothing of " + name + "; choose other curves or points"
                         : "a fillet of radius " + spoken(radius) + " would leave nothing of " + name +
                               "; choose a smaller radius";
}

Shape endedAt(const Shape& shape, double param, CurveEnd end) {
    return periodOf(shape) > 0.0 ? shape : withEndAt(shape, end, param);
}

}  // namespace

Vec2 pickOn(const FilletSide& side, Vec2 point, std::vector<std::string>* remarks) {
    return pointAt(side.shape, paramOnCurve(side.shape, side.name, point, remarks));
}

void refuseSmooth(const FilletSide& a, const FilletSide& b) {
    if (const std::optional<Vec2> joint = smoothJoint(a, b, kStraightOn))
        refuseCornerless(a, b, *joint);
}

std::optional<CurveFillet> sharpCorner(const FilletSide& a, const FilletSide& b) {
    return jointsOf(a, b, 0.0).empty() ? std::nullopt : std::optional(filletCurves(a, b, 0.0));
}

CurveFillet filletCurves(const FilletSide& a, const FilletSide& b, double radius) {
    const Joint joint = bestJoint(a, b, radius);
    const std::optional<Vec2> smooth = radius == 0.0 ? smoothJoint(a, b, kStraightOn) : std::nullopt;
    if (smooth && distance(pointAt(a.shape, joint.paramA), *smooth) <= kHolds * (1.0 + norm(*smooth)))
        refuseCornerless(a, b, *smooth);
    if (isSwallowed(a.shape, joint.paramA, joint.endA))
        refuse(a, b, swallowing(a.name, radius));
    if (isSwallowed(b.shape, joint.paramB, joint.endB))
        refuse(a, b, swallowing(b.name, radius));
    CurveFillet fillet{.first = endedAt(a.shape, joint.paramA, joint.endA),
                       .second = endedAt(b.shape, joint.paramB, joint.endB),
                       .firstEnd = joint.endA,
                       .secondEnd = joint.endB};
    fillet.arc = joint.arc;
    return fillet;
}

}  // namespace holdfast::editing
