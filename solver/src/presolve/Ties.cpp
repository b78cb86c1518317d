#include <cmath>
#include <numbers>

#include "solver/src/residuals/ResidualBuilders.h"

/// What constraints say by merging values alone.
namespace holdfast::solver::detail {

bool tieCoincident(EquationBuilder& builder) {
    const Operand p = builder.need(pointAt(builder.sketch(), builder.ref(0)));
    const Operand q = builder.need(pointAt(builder.sketch(), builder.ref(1)));
    if (!isDirect(p) || !isDirect(q))
        return false;
    builder.tiePoints(p, q);
    return true;
}

namespace {

/// A direction angle becomes the multiple of pi (plus a quarter turn) that is nearest to where it was.
void fixDirection(EquationBuilder& builder, int angle, double quarter) {
    const double turns = std::round((builder.reference(angle) - quarter) / std::numbers::pi);
    builder.fix(angle, quarter + turns * std::numbers::pi);
}

}  // namespace

bool tieSameCoordinate(EquationBuilder& builder) {
    const auto across = static_cast<std::size_t>(builder.traits().coordinate);
    const SketchPlace& first = builder.ref(0);
    if (builder.constraint().refs.size() == 1) {
        const Operand line = builder.need(lineAt(builder.sketch(), curveOf(first)));
        if (line.kind == OperandKind::axis)
            fixDirection(builder, line.inputs[2], across == 0 ? std::numbers::pi / 2 : 0.0);
        else
            builder.tie(line.inputs[2 + across], line.inputs[across], 1.0, 0.0);
        return true;
    }
    const Operand p = builder.need(pointAt(builder.sketch(), first));
    const Operand q = builder.need(pointAt(builder.sketch(), builder.ref(1)));
    if (!isDirect(p) || !isDirect(q))
        return false;
    builder.tie(q.inputs[across], p.inputs[across], 1.0, 0.0);
    return true;
}

bool tieCoordinateGap(EquationBuilder& builder) {
    const auto coordinate = static_cast<std::size_t>(builder.traits().coordinate);
    const Operand p = builder.need(pointAt(builder.sketch(), builder.ref(0)));
    const Operand q = builder.need(pointAt(builder.sketch(), builder.ref(1)));
    if (!isDirect(p) || !isDirect(q))
        return false;
    builder.tie(q.inputs[coordinate], p.inputs[coordinate], 1.0, builder.target());
    return true;
}

bool tieRadius(EquationBuilder& builder) {
    const Operand circle = builder.need(circleAt(builder.sketch(), curveOf(builder.ref(0))));
    if (builder.target() <= 0.0)
        builder.fail("a radius has to be above 0");
    if (circle.kind != OperandKind::circle)
        return false;
    builder.fix(circle.inputs[2], builder.target());
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

namespace {

void fixAll(EquationBuilder& builder, std::span<const int> values) {
    for (const int v : values)
        builder.fix(v, builder.reference(v));
}

}  // namespace

/// Entities that a fixed constraint holds by constants alone. A line may slide along itself, so it needs equations.
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

bool tieMeetingEnds(EquationBuilder& builder) {
    if (builder.constraint().refs.size() != 2)
        return false;
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    if (!isEndPlace(a) || !isEndPlace(b))
        return false;
    const auto p = pointAt(builder.sketch(), a), q = pointAt(builder.sketch(), b);
    if (p && q && isDirect(*p) && isDirect(*q))
        builder.tiePoints(*p, *q, true);
    return false;
}

}  // namespace holdfast::solver::detail
