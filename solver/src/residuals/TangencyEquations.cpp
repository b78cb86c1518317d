#include <cmath>
#include <utility>

#include "solver/src/residuals/AuxiliaryParameters.h"
#include "solver/src/residuals/ResidualBuilders.h"

/// Tangent in all its forms, perpendicular at a place, and curvature-continuous joints.
namespace holdfast::solver::detail {

namespace {

/// Curves that touch somewhere along a spline or an ellipse: the parameter of the contact is an unknown.
void addTouch(EquationBuilder& builder, CurveRef one, CurveRef two) {
    if (!hasContacts(builder, two))
        std::swap(one, two);
    Equation form = formOf(ResidualKind::curveTouch, 3);
    form.scale = turnScale(builder, one, two);
    const Contact contact = contactOn(builder, two);
    if (hasContacts(builder, one)) {
        const Contact first = contactOn(builder, one);
        startContacts(builder, form, {first.jet, contact.jet}, {first, contact});
        builder.add(form, {first.jet, contact.jet});
        return;
    }
    const auto line = lineAt(builder.sketch(), one);
    form.residualKind = line ? ResidualKind::lineTouch : ResidualKind::circleTouch;
    form.rows = 2;
    const Operand other = line ? *line : *circleAt(builder.sketch(), one);
    startContacts(builder, form, {other, contact.jet}, {contact});
    builder.add(form, {other, contact.jet});
}

/// Distance of the line from the centre against the reach of a circle or ellipse, on the side where the curve is.
Equation lineTangentForm(EquationBuilder& builder, const Operand& line, ResidualKind residualKind,
                         const Operand& round) {
    Equation form = formOf(residualKind);
    if (residualKind == ResidualKind::lineCircle)
        form.mode = static_cast<std::uint8_t>(GapMode::outside);
    const double left = builder.residualAtReference(form, {line, round});
    form.sign = -1.0;
    const double right = builder.residualAtReference(form, {line, round});
    // Distance minus reach is nearer to 0 on the side where the curve is.
    form.sign = left >= right ? 1.0 : -1.0;
    return form;
}

/// Distance of the centres against the sum or the difference of the radii, whichever is nearer to holding.
Equation circleTangentForm(EquationBuilder& builder, const Operand& a, const Operand& b) {
    Equation outside = formOf(ResidualKind::circleCircle);
    outside.mode = static_cast<std::uint8_t>(GapMode::outside);
    Equation inside = outside;
    inside.mode = static_cast<std::uint8_t>(GapMode::inside);
    inside.sign = builder.residualAtReference(formOf(ResidualKind::equalRadii), {a, b}) < 0.0 ? -1.0 : 1.0;
    const double outer = std::abs(builder.residualAtReference(outside, {a, b}));
    const double inner = std::abs(builder.residualAtReference(inside, {a, b}));
    return outer <= inner ? outside : inside;
}

Equation directionForm(EquationBuilder& builder) {
    Equation form = formOf(ResidualKind::directions);
    const bool isTangent = builder.traits().residual != ConstraintResidual::perpendicular;
    form.mode = static_cast<std::uint8_t>(isTangent ? DirectionMode::parallel : DirectionMode::perpendicular);
    form.scale = turnScale(builder, curveOf(builder.ref(0)), curveOf(builder.ref(1)));
    return form;
}

void addDirections(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& point,
                   bool isHeld = false) {
    if (builder.traits().residual == ConstraintResidual::perpendicular)
        builder.add(directionForm(builder), {a, b, point});
    else
        builder.addTangency(directionForm(builder), {a, b, point}, isHeld);
}

/// The curve for its direction at a point on it, which the point is put on unless that is known already.
Operand curveThrough(EquationBuilder& builder, const SketchPlace& place, const Operand& point) {
    const CurveRef curve = curveOf(place);
    if (!isSplineCurve(builder.sketch(), curve)) {
        if (!builder.isOn(point, curve))
            addPointOnCurve(builder, point, place);
        return builder.need(curveAt(builder.sketch(), place));
    }
    if (const auto start = startOf(builder.sketch(), curve); start && builder.isOnePoint(point, *start))
        return *curveAt(builder.sketch(), {place.entity, PlaceKind::start, 0});
    if (const auto end = endOf(builder.sketch(), curve); end && builder.isOnePoint(point, *end))
        return *curveAt(builder.sketch(), {place.entity, PlaceKind::end, 0});
    const Contact contact = contactOn(builder, curve);
    Operand position = contact.jet;
    position.kind = OperandKind::splinePoint;
    startContacts(builder, formOf(ResidualKind::samePoint, 2), {point, position}, {contact});
    builder.add(formOf(ResidualKind::samePoint, 2), {point, position});
    return contact.jet;
}

void addAtPoint(EquationBuilder& builder, const Operand& point, bool isHeld = false) {
    const Operand a = curveThrough(builder, builder.ref(0), point);
    const Operand b = curveThrough(builder, builder.ref(1), point);
    addDirections(builder, a, b, point, isHeld);
}

Operand endPoint(EquationBuilder& builder, const SketchPlace& place) {
    return builder.need(pointAt(builder.sketch(), place));
}

/// Two ends that meet: the same point, unless ties have seen to that.
Operand joinEnds(EquationBuilder& builder) {
    const Operand p = endPoint(builder, builder.ref(0)), q = endPoint(builder, builder.ref(1));
    if (!isDirect(p) || !isDirect(q))
        builder.add(formOf(ResidualKind::samePoint, 2), {p, q});
    return isDirect(p) ? p : q;
}

/// A tangency that has a formula of its own, without a point of contact.
struct WholeTangency {
    Equation form;
    Operand a, b;
};

std::optional<WholeTangency> wholeTangency(EquationBuilder& builder, CurveRef one, CurveRef two) {
    const SketchData& sketch = builder.sketch();
    const auto circleA = circleAt(sketch, one), circleB = circleAt(sketch, two);
    if (circleA && circleB)
        return WholeTangency{circleTangentForm(builder, *circleA, *circleB), *circleA, *circleB};
    const auto line = lineAt(sketch, one);
    if (!line)
        return lineAt(sketch, two) ? wholeTangency(builder, two, one) : std::nullopt;
    if (circleB)
        return WholeTangency{lineTangentForm(builder, *line, ResidualKind::lineCircle, *circleB), *line, *circleB};
    if (const auto ellipse = ellipseAt(sketch, two))
        return WholeTangency{lineTangentForm(builder, *line, ResidualKind::lineEllipse, *ellipse), *line, *ellipse};
    if (lineAt(sketch, two))
        builder.refusePlaces();
    return std::nullopt;
}

/// Where the curves share a point that point is the contact, and a formula of distances would be at its maximum
/// there: directions are compared instead. Distances that hold within the tolerance leave an error of its square root
/// in the direction, so curves that count as tangent by their distance are left as they are.
void addWhole(EquationBuilder& builder) {
    const CurveRef one = curveOf(builder.ref(0)), two = curveOf(builder.ref(1));
    const auto tangency = wholeTangency(builder, one, two);
    if (const auto shared = builder.pointOnBoth(one, two))
        addAtPoint(builder, *shared, tangency && builder.holdsNow(tangency->form, {tangency->a, tangency->b}));
    else if (tangency)
        builder.add(tangency->form, {tangency->a, tangency->b});
    else
        addTouch(builder, one, two);
}

Operand endCurve(EquationBuilder& builder, const SketchPlace& place) {
    return builder.need(curveAt(builder.sketch(), place));
}

}  // namespace

void addTangency(EquationBuilder& builder) {
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    if (builder.constraint().refs.size() == 3) {
        addAtPoint(builder, builder.need(pointAt(builder.sketch(), builder.ref(2))));
    } else if (isEndPlace(a) && isEndPlace(b)) {
        const Operand point = joinEnds(builder);
        addDirections(builder, endCurve(builder, a), endCurve(builder, b), point);
    } else if (isEndPlace(a)) {
        const Operand point = endPoint(builder, a);
        const Operand other = curveThrough(builder, b, point);
        addDirections(builder, endCurve(builder, a), other, point);
    } else if (isEndPlace(b)) {
        const Operand point = endPoint(builder, b);
        const Operand other = curveThrough(builder, a, point);
        addDirections(builder, other, endCurve(builder, b), point);
    } else {
        addWhole(builder);
    }
}

void addSmoothness(EquationBuilder& builder) {
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    if (!isEndPlace(a) || !isEndPlace(b))
        builder.refusePlaces();
    const Operand point = joinEnds(builder);
    const Operand one = endCurve(builder, a), two = endCurve(builder, b);
    addDirections(builder, one, two, point);
    Equation form = formOf(ResidualKind::curvatures);
    form.scale = directionForm(builder).scale;
    form.sign = builder.runAlike(one, two, point) ? 1.0 : -1.0;
    builder.add(form, {one, two, point});
}

}  // namespace holdfast::solver::detail
