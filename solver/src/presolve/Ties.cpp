#include <cmath>
#include <numbers>

#include "solver/src/residuals/EquationBuilder.h"

/// What constraints say by merging values alone.
namespace holdfast::solver::detail {

namespace {

enum class Level { horizontal, vertical };

bool tieCoincident(EquationBuilder& builder) {
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    const Operand p = builder.need(pointAt(builder.sketch(), a), a, "a point");
    const Operand q = builder.need(pointAt(builder.sketch(), b), b, "a point");
    if (!isDirect(p) || !isDirect(q))
        return false;
    builder.tiePoints(p, q);
    return true;
}

/// A direction angle becomes the multiple of pi (plus a quarter turn) that is nearest to where it was.
void fixDirection(EquationBuilder& builder, int angle, Level level) {
    const double quarter = level == Level::vertical ? std::numbers::pi / 2 : 0.0;
    const double turns = std::round((builder.reference(angle) - quarter) / std::numbers::pi);
    builder.fix(angle, quarter + turns * std::numbers::pi);
}

bool tieLevel(EquationBuilder& builder, Level level) {
    const std::size_t across = level == Level::horizontal ? 1 : 0;
    const SketchPlace& first = builder.ref(0);
    if (builder.constraint().refs.size() == 1) {
        const Operand line = builder.need(lineAt(builder.sketch(), curveOf(first)), first, "a line");
        if (line.kind == OperandKind::axis)
            fixDirection(builder, line.inputs[2], level);
        else
            builder.tie(line.inputs[2 + across], line.inputs[across], 1.0, 0.0);
        return true;
    }
    const SketchPlace& second = builder.ref(1);
    const Operand p = builder.need(pointAt(builder.sketch(), first), first, "a point");
    const Operand q = builder.need(pointAt(builder.sketch(), second), second, "a point");
    if (!isDirect(p) || !isDirect(q))
        return false;
    builder.tie(q.inputs[across], p.inputs[across], 1.0, 0.0);
    return true;
}

bool tieDelta(EquationBuilder& builder, std::size_t coordinate) {
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    const Operand p = builder.need(pointAt(builder.sketch(), a), a, "a point");
    const Operand q = builder.need(pointAt(builder.sketch(), b), b, "a point");
    if (!isDirect(p) || !isDirect(q))
        return false;
    builder.tie(q.inputs[coordinate], p.inputs[coordinate], 1.0, builder.constraint().value);
    return true;
}

bool tieRadius(EquationBuilder& builder, double radius) {
    const SketchPlace& place = builder.ref(0);
    const Operand circle = builder.need(circleAt(builder.sketch(), curveOf(place)), place, "a circle or an arc");
    if (radius <= 0.0)
        builder.fail("a radius has to be above 0");
    if (circle.kind != OperandKind::circle)
        return false;
    builder.fix(circle.inputs[2], radius);
    return true;
}

bool tieEqual(EquationBuilder& builder) {
    const auto a = circleAt(builder.sketch(), curveOf(builder.ref(0)));
    const auto b = circleAt(builder.sketch(), curveOf(builder.ref(1)));
    if (!a || !b || a->kind != OperandKind::circle || b->kind != OperandKind::circle)
        return false;
    builder.tie(b->inputs[2], a->inputs[2], 1.0, 0.0);
    return true;
}

void fixAll(EquationBuilder& builder, std::span<const int> values) {
    for (const int v : values)
        builder.fix(v, builder.reference(v));
}

/// Elements that a fixed constraint holds by constants alone. A line may slide along itself, so it needs equations.
bool tieFixed(EquationBuilder& builder) {
    const SketchPlace& place = builder.ref(0);
    if (const auto point = pointAt(builder.sketch(), place); point && isDirect(*point)) {
        fixAll(builder, point->inputs);
        return true;
    }
    const CurveRef curve = curveOf(place);
    if (const auto circle = circleAt(builder.sketch(), curve); circle && circle->kind == OperandKind::circle) {
        fixAll(builder, circle->inputs);
        return true;
    }
    if (const auto ellipse = ellipseAt(builder.sketch(), curve)) {
        fixAll(builder, ellipse->inputs);
        return true;
    }
    if (!isSplineCurve(builder.sketch(), curve) || place.kind != PlaceKind::whole)
        return false;
    const SketchEntity& spline = builder.sketch().entities[static_cast<std::size_t>(place.entity)];
    for (int v = spline.firstValue; v < spline.firstValue + spline.valueCount; ++v)
        builder.fix(v, builder.reference(v));
    return true;
}

/// Ends that meet where they are tangent or smooth are the same point.
void tieMeetingEnds(EquationBuilder& builder) {
    if (builder.constraint().refs.size() != 2)
        return;
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    if (!isEndPlace(a) || !isEndPlace(b))
        return;
    const auto p = pointAt(builder.sketch(), a), q = pointAt(builder.sketch(), b);
    if (p && q && isDirect(*p) && isDirect(*q))
        builder.tiePoints(*p, *q, true);
}

}  // namespace

bool tieNow(EquationBuilder& builder) {
    switch (builder.constraint().type) {
        case ConstraintType::coincident:
        case ConstraintType::concentric:
            return tieCoincident(builder);
        case ConstraintType::horizontal:
            return tieLevel(builder, Level::horizontal);
        case ConstraintType::vertical:
            return tieLevel(builder, Level::vertical);
        case ConstraintType::distanceX:
            return tieDelta(builder, 0);
        case ConstraintType::distanceY:
            return tieDelta(builder, 1);
        case ConstraintType::radius:
            return tieRadius(builder, builder.constraint().value);
        case ConstraintType::diameter:
            return tieRadius(builder, 0.5 * builder.constraint().value);
        case ConstraintType::equal:
            return tieEqual(builder);
        case ConstraintType::fixed:
            return tieFixed(builder);
        case ConstraintType::tangent:
        case ConstraintType::perpendicular:
        case ConstraintType::g2Smooth:
            tieMeetingEnds(builder);
            return false;
        default:
            return false;
    }
}

}  // namespace holdfast::solver::detail
