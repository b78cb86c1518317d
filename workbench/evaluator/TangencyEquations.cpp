#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "workbench/evaluator/EquationBuilder.h"
#include "workbench/evaluator/SplineBasis.h"

/// Tangent in all its forms, perpendicular at a place, and curvature-continuous joints.
namespace holdfast {

namespace {

/// A curve with a point of it given by a parameter that is an unknown of its own.
struct Contact {
    Operand jet;
    int param = -1;
    double first = 0.0, last = 1.0;
};

Contact contactOn(EquationBuilder& builder, CurveRef curve) {
    // A parameter is no geometry: it may run along the curve at little cost.
    constexpr double cheap = 1e-2;
    const double size = sizeOf(builder.figure(), curve, builder.size());
    if (auto ellipse = ellipseAt(builder.figure(), curve)) {
        const int param = builder.addContact(0.0, cheap * size);
        ellipse->kind = OperandKind::ellipseAt;
        ellipse->inputs.push_back(param);
        return {*ellipse, param, 0.0, 2 * std::numbers::pi};
    }
    const FigureEntity& entity = builder.figure().entities[static_cast<std::size_t>(curve.entity)];
    const SplineRange range = splineRange(builder.figure().splines[static_cast<std::size_t>(entity.spline)]);
    const int param = builder.addContact(range.first, cheap * size / (range.last - range.first));
    return {splineAt(builder.figure(), curve.entity, OperandKind::splineJet, param), param, range.first, range.last};
}

bool hasContacts(EquationBuilder& builder, CurveRef curve) {
    return ellipseAt(builder.figure(), curve).has_value() || isSplineCurve(builder.figure(), curve);
}

/// Puts a contact where the curves come closest to touching, found from samples.
void startContact(EquationBuilder& builder, When when, Equation form, const Operand& other, const Contact& contact) {
    constexpr int samples = 128;
    double best = std::numeric_limits<double>::max(), bestParam = contact.first;
    for (int i = 0; i <= samples; ++i) {
        const double t = contact.first + (contact.last - contact.first) * i / samples;
        builder.setContact(when, contact.param, t);
        const double miss = builder.missAt(when, form, {other, contact.jet});
        if (miss < best) {
            best = miss;
            bestParam = t;
        }
    }
    builder.setContact(when, contact.param, bestParam);
}

void startContact(EquationBuilder& builder, Equation form, const Operand& other, const Contact& contact) {
    startContact(builder, When::reference, form, other, contact);
    startContact(builder, When::now, form, other, contact);
}

void startContacts(EquationBuilder& builder, When when, Equation form, const Contact& a, const Contact& b) {
    constexpr int samples = 48;
    double best = std::numeric_limits<double>::max(), bestParam = a.first;
    for (int i = 0; i <= samples; ++i) {
        const double t = a.first + (a.last - a.first) * i / samples;
        builder.setContact(when, a.param, t);
        startContact(builder, when, form, a.jet, b);
        const double miss = builder.missAt(when, form, {a.jet, b.jet});
        if (miss < best) {
            best = miss;
            bestParam = t;
        }
    }
    builder.setContact(when, a.param, bestParam);
    startContact(builder, when, form, a.jet, b);
}

/// Curves that touch somewhere along a spline or an ellipse: the parameter of the contact is an unknown.
void addTouch(EquationBuilder& builder, CurveRef one, CurveRef two) {
    if (!hasContacts(builder, two))
        std::swap(one, two);
    Equation form = formOf(Kernel::curveTouch, 3);
    form.scale = turnScale(builder, one, two);
    const Contact contact = contactOn(builder, two);
    if (hasContacts(builder, one)) {
        const Contact first = contactOn(builder, one);
        startContacts(builder, When::reference, form, first, contact);
        startContacts(builder, When::now, form, first, contact);
        builder.add(form, {first.jet, contact.jet});
        return;
    }
    const auto line = lineAt(builder.figure(), one);
    form.kernel = line ? Kernel::lineTouch : Kernel::circleTouch;
    form.rows = 2;
    const Operand other = line ? *line : *circleAt(builder.figure(), one);
    startContact(builder, form, other, contact);
    builder.add(form, {other, contact.jet});
}

/// Distance of the line from the centre against the reach of a circle or ellipse, on the side where the curve is.
Equation lineTangentForm(EquationBuilder& builder, const Operand& line, Kernel kernel, const Operand& round) {
    Equation form = formOf(kernel);
    if (kernel == Kernel::lineCircle)
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
    Equation outside = formOf(Kernel::circleCircle);
    outside.mode = static_cast<std::uint8_t>(GapMode::outside);
    Equation inside = outside;
    inside.mode = static_cast<std::uint8_t>(GapMode::inside);
    inside.sign = builder.residualAtReference(formOf(Kernel::equalRadii), {a, b}) < 0.0 ? -1.0 : 1.0;
    const double outer = std::abs(builder.residualAtReference(outside, {a, b}));
    const double inner = std::abs(builder.residualAtReference(inside, {a, b}));
    return outer <= inner ? outside : inside;
}

Equation directionForm(EquationBuilder& builder) {
    Equation form = formOf(Kernel::directions);
    const bool isTangent = builder.constraint().type != ConstraintType::perpendicular;
    form.mode = static_cast<std::uint8_t>(isTangent ? DirectionMode::parallel : DirectionMode::perpendicular);
    form.scale = turnScale(builder, curveOf(builder.ref(0)), curveOf(builder.ref(1)));
    return form;
}

void addDirections(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& point,
                   bool isHeld = false) {
    if (builder.constraint().type == ConstraintType::perpendicular)
        builder.add(directionForm(builder), {a, b, point});
    else
        builder.addTangency(directionForm(builder), {a, b, point}, isHeld);
}

/// The curve for its direction at a point on it, which the point is put on unless that is known already.
Operand curveThrough(EquationBuilder& builder, const FigurePlace& place, const Operand& point) {
    const CurveRef curve = curveOf(place);
    if (!isSplineCurve(builder.figure(), curve)) {
        if (!builder.isOn(point, curve))
            addPointOnCurve(builder, point, place);
        return builder.need(curveAt(builder.figure(), place), place, "a curve");
    }
    if (const auto start = startOf(builder.figure(), curve); start && builder.isOnePoint(point, *start))
        return *curveAt(builder.figure(), {place.entity, PlaceKind::start, 0});
    if (const auto end = endOf(builder.figure(), curve); end && builder.isOnePoint(point, *end))
        return *curveAt(builder.figure(), {place.entity, PlaceKind::end, 0});
    const Contact contact = contactOn(builder, curve);
    Operand position = contact.jet;
    position.kind = OperandKind::splinePoint;
    startContact(builder, formOf(Kernel::samePoint, 2), point, {position, contact.param, contact.first, contact.last});
    builder.add(formOf(Kernel::samePoint, 2), {point, position});
    return contact.jet;
}

void addAtPoint(EquationBuilder& builder, const Operand& point, bool isHeld = false) {
    const Operand a = curveThrough(builder, builder.ref(0), point);
    const Operand b = curveThrough(builder, builder.ref(1), point);
    addDirections(builder, a, b, point, isHeld);
}

Operand endPoint(EquationBuilder& builder, const FigurePlace& place) {
    return builder.need(pointAt(builder.figure(), place), place, "an end of a curve");
}

/// Two ends that meet: the same point, unless ties have seen to that.
Operand joinEnds(EquationBuilder& builder) {
    const Operand p = endPoint(builder, builder.ref(0)), q = endPoint(builder, builder.ref(1));
    if (!isDirect(p) || !isDirect(q))
        builder.add(formOf(Kernel::samePoint, 2), {p, q});
    return isDirect(p) ? p : q;
}

/// A tangency that has a formula of its own, without a point of contact.
struct WholeTangency {
    Equation form;
    Operand a, b;
};

std::optional<WholeTangency> wholeTangency(EquationBuilder& builder, CurveRef one, CurveRef two) {
    const Figure& figure = builder.figure();
    const auto circleA = circleAt(figure, one), circleB = circleAt(figure, two);
    if (circleA && circleB)
        return WholeTangency{circleTangentForm(builder, *circleA, *circleB), *circleA, *circleB};
    const auto line = lineAt(figure, one);
    if (!line)
        return lineAt(figure, two) ? wholeTangency(builder, two, one) : std::nullopt;
    if (circleB)
        return WholeTangency{lineTangentForm(builder, *line, Kernel::lineCircle, *circleB), *line, *circleB};
    if (const auto ellipse = ellipseAt(figure, two))
        return WholeTangency{lineTangentForm(builder, *line, Kernel::lineEllipse, *ellipse), *line, *ellipse};
    if (lineAt(figure, two))
        builder.fail("two lines cannot be tangent; make them parallel or collinear");
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

Operand endCurve(EquationBuilder& builder, const FigurePlace& place) {
    return builder.need(curveAt(builder.figure(), place), place, "an end of a curve");
}

}  // namespace

void addTangency(EquationBuilder& builder) {
    const FigurePlace &a = builder.ref(0), &b = builder.ref(1);
    if (builder.constraint().refs.size() == 3) {
        const FigurePlace& at = builder.ref(2);
        addAtPoint(builder, builder.need(pointAt(builder.figure(), at), at, "a point"));
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
    const FigurePlace &a = builder.ref(0), &b = builder.ref(1);
    if (!isEndPlace(a) || !isEndPlace(b))
        builder.fail("curves are smooth where two ends meet; name an end of each");
    const Operand point = joinEnds(builder);
    const Operand one = endCurve(builder, a), two = endCurve(builder, b);
    addDirections(builder, one, two, point);
    Equation form = formOf(Kernel::curvatures);
    form.scale = directionForm(builder).scale;
    form.sign = builder.runAlike(one, two, point) ? 1.0 : -1.0;
    builder.add(form, {one, two, point});
}

}  // namespace holdfast
