#include <cmath>
#include <utility>

#include "geometry/SplineBasis.h"
#include "solver/src/residuals/ResidualBuilders.h"

/// Where points are: coincident, on a curve, fixed, level with each other, in the middle; and symmetric.
namespace holdfast::solver::detail {

namespace {

Operand pointRef(EquationBuilder& builder, std::size_t i) {
    return builder.need(pointAt(builder.sketch(), builder.ref(i)));
}

void addDelta(EquationBuilder& builder, double value) {
    Equation form = formOf(builder.traits().coordinate == 0 ? ResidualKind::pointsDeltaX : ResidualKind::pointsDeltaY);
    form.value = value;
    builder.add(form, {pointRef(builder, 0), pointRef(builder, 1)});
}

double nearestParam(const EquationBuilder& builder, When when, int entity, const Operand& point) {
    const SketchEntity& e = builder.sketch().entities[static_cast<std::size_t>(entity)];
    const auto control =
        builder.values(when).subspan(static_cast<std::size_t>(e.firstValue), static_cast<std::size_t>(e.valueCount));
    const Operand first{OperandKind::point, {e.firstValue, e.firstValue + 1}, {}};
    const Vec2 p{control[0] + builder.residualAt(when, formOf(ResidualKind::pointsDeltaX), {first, point}),
                 control[1] + builder.residualAt(when, formOf(ResidualKind::pointsDeltaY), {first, point})};
    return nearestSplineParam(builder.sketch().splines[static_cast<std::size_t>(e.spline)], control, p);
}

void addPointOnSpline(EquationBuilder& builder, const Operand& point, int entity) {
    const SplineKnots& spline =
        builder.sketch()
            .splines[static_cast<std::size_t>(builder.sketch().entities[static_cast<std::size_t>(entity)].spline)];
    const SplineRange range = splineRange(spline);
    // A parameter is no geometry: it may run along the curve at little cost.
    constexpr double cheap = 1e-2;
    const double speed = sizeOf(builder.sketch(), {entity, -1}, builder.size()) / (range.last - range.first);
    const int param = builder.addContact(range.first, cheap * speed);
    for (const When when : {When::reference, When::now})
        builder.setContact(when, param, nearestParam(builder, when, entity, point));
    builder.add(formOf(ResidualKind::samePoint, 2),
                {point, splineAt(builder.sketch(), entity, OperandKind::splinePoint, param)});
}

/// The entity's line where the reference has it, as an operand of constants.
Operand constantLine(EquationBuilder& builder, const Operand& line) {
    Operand constant{line.kind, {}, {}};
    for (const int v : line.inputs)
        constant.inputs.push_back(builder.addConstant(builder.reference(v)));
    return constant;
}

/// Both defining points stay on the line as it was; they may slide along it.
void fixLine(EquationBuilder& builder, const Operand& line) {
    const Operand base{OperandKind::point, {line.inputs[0], line.inputs[1]}, {}};
    builder.add(formOf(ResidualKind::pointLine), {base, constantLine(builder, line)});
    if (line.kind == OperandKind::axis) {
        builder.fix(line.inputs[2], builder.reference(line.inputs[2]));
        return;
    }
    const Operand tip{OperandKind::point, {line.inputs[2], line.inputs[3]}, {}};
    builder.add(formOf(ResidualKind::pointLine), {tip, constantLine(builder, line)});
}

void addFixedPolyline(EquationBuilder& builder, const SketchEntity& polyline) {
    for (int v = polyline.firstValue; v < polyline.firstValue + polyline.valueCount; ++v)
        builder.fix(v, builder.reference(v));
}

void addMirrored(EquationBuilder& builder, const Operand& p, const Operand& q, const Operand& axis) {
    builder.add(formOf(ResidualKind::mirrored, 2), {p, q, axis});
}

Operand endOfLine(const Operand& line, std::size_t which) {
    return {OperandKind::point, {line.inputs[2 * which], line.inputs[2 * which + 1]}, {}};
}

/// Which ends of two lines are mirror images: start and start, or start and end, is read off the reference.
bool isCrossed(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& axis) {
    const Equation form = formOf(ResidualKind::mirrored, 2);
    const double straight = std::abs(builder.residualAtReference(form, {endOfLine(a, 0), endOfLine(b, 0), axis})) +
                            std::abs(builder.residualAtReference(form, {endOfLine(a, 1), endOfLine(b, 1), axis}));
    const double crossed = std::abs(builder.residualAtReference(form, {endOfLine(a, 0), endOfLine(b, 1), axis})) +
                           std::abs(builder.residualAtReference(form, {endOfLine(a, 1), endOfLine(b, 0), axis}));
    return crossed < straight;
}

void addMirroredLines(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& axis) {
    if (a.kind == OperandKind::segment && b.kind == OperandKind::segment) {
        const std::size_t first = isCrossed(builder, a, b, axis) ? 1 : 0;
        addMirrored(builder, endOfLine(a, 0), endOfLine(b, first), axis);
        addMirrored(builder, endOfLine(a, 1), endOfLine(b, 1 - first), axis);
        return;
    }
    Equation form = formOf(ResidualKind::mirroredDirections);
    form.scale = turnScale(builder, curveOf(builder.ref(0)), curveOf(builder.ref(1)));
    builder.add(form, {a, b, axis});
}

void addMirroredCircles(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& axis) {
    const auto centre = [&](const Operand& circle, const SketchPlace& place) {
        SketchPlace at = place;
        at.kind = circle.kind == OperandKind::bulgeCircle ? PlaceKind::segmentCentre : PlaceKind::centre;
        return *pointAt(builder.sketch(), at);
    };
    addMirrored(builder, centre(a, builder.ref(0)), centre(b, builder.ref(1)), axis);
    builder.add(formOf(ResidualKind::equalRadii), {a, b});
}

void addMirroredEllipses(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& axis) {
    const auto part = [](OperandKind kind, const Operand& e, std::initializer_list<std::size_t> which) {
        Operand result{kind, {}, {}};
        for (const std::size_t i : which)
            result.inputs.push_back(e.inputs[i]);
        return result;
    };
    addMirrored(builder, part(OperandKind::point, a, {0, 1}), part(OperandKind::point, b, {0, 1}), axis);
    builder.add(formOf(ResidualKind::equalMajorRadii), {a, b});
    builder.add(formOf(ResidualKind::equalScalars),
                {part(OperandKind::scalar, a, {4}), part(OperandKind::scalar, b, {4})});
    // The major axes as lines from the origin to the axis vector.
    const int zero = builder.addConstant(0.0);
    const auto axisOf = [&](const Operand& e) {
        return Operand{OperandKind::segment, {zero, zero, e.inputs[2], e.inputs[3]}, {}};
    };
    Equation form = formOf(ResidualKind::mirroredDirections);
    form.scale = turnScale(builder, curveOf(builder.ref(0)), curveOf(builder.ref(1)));
    builder.add(form, {axisOf(a), axisOf(b), axis});
}

void addMirroredCurves(EquationBuilder& builder, const Operand& axis) {
    const SketchData& sketch = builder.sketch();
    const CurveRef one = curveOf(builder.ref(0)), two = curveOf(builder.ref(1));
    if (const auto a = lineAt(sketch, one), b = lineAt(sketch, two); a && b)
        addMirroredLines(builder, *a, *b, axis);
    else if (const auto c = circleAt(sketch, one), d = circleAt(sketch, two); c && d)
        addMirroredCircles(builder, *c, *d, axis);
    else if (const auto e = ellipseAt(sketch, one), f = ellipseAt(sketch, two); e && f)
        addMirroredEllipses(builder, *e, *f, axis);
    else
        builder.refusePlaces();
}

}  // namespace

void addSamePoint(EquationBuilder& builder) {
    builder.add(formOf(ResidualKind::samePoint, 2), {pointRef(builder, 0), pointRef(builder, 1)});
}

void addSameCoordinate(EquationBuilder& builder) {
    addDelta(builder, 0.0);
}

void addCoordinateGap(EquationBuilder& builder) {
    addDelta(builder, builder.target());
}

void addFixed(EquationBuilder& builder) {
    const SketchPlace& place = builder.ref(0);
    const SketchEntity& entity = builder.sketch().entities[static_cast<std::size_t>(place.entity)];
    if (const auto point = pointAt(builder.sketch(), place)) {
        Operand there{OperandKind::point, {}, {}};
        for (const ResidualKind residualKind : {ResidualKind::pointsDeltaX, ResidualKind::pointsDeltaY}) {
            const int zero = builder.addConstant(0.0);
            const Operand origin{OperandKind::point, {zero, zero}, {}};
            there.inputs.push_back(
                builder.addConstant(builder.residualAtReference(formOf(residualKind), {origin, *point})));
        }
        builder.add(formOf(ResidualKind::samePoint, 2), {*point, there});
        return;
    }
    const CurveRef curve = curveOf(place);
    if (const auto line = lineAt(builder.sketch(), curve)) {
        fixLine(builder, *line);
    } else if (const auto circle = circleAt(builder.sketch(), curve)) {
        for (const int v : circle->inputs)
            builder.fix(v, builder.reference(v));
    } else if (entity.kind == EntityKind::polyline && place.kind == PlaceKind::whole) {
        addFixedPolyline(builder, entity);
    } else {
        builder.refusePlaces();
    }
}

void addMidpoint(EquationBuilder& builder) {
    SketchPlace middle = builder.ref(1);
    middle.kind = curveOf(middle).segment < 0 ? PlaceKind::mid : PlaceKind::segmentMid;
    const Operand point = builder.need(pointAt(builder.sketch(), middle));
    builder.add(formOf(ResidualKind::samePoint, 2), {pointRef(builder, 0), point});
}

void addPointOnCurve(EquationBuilder& builder, const Operand& point, const SketchPlace& place) {
    const SketchData& sketch = builder.sketch();
    const CurveRef curve = curveOf(place);
    builder.notePointOn(point, curve);
    if (const auto line = lineAt(sketch, curve))
        builder.add(formOf(ResidualKind::pointLine), {point, *line});
    else if (const auto circle = circleAt(sketch, curve))
        builder.add(formOf(ResidualKind::pointCircle), {point, *circle});
    else if (const auto ellipse = ellipseAt(sketch, curve))
        builder.add(formOf(ResidualKind::pointEllipse), {point, *ellipse});
    else if (isSplineCurve(sketch, curve))
        addPointOnSpline(builder, point, place.entity);
    else
        builder.refusePlaces();
}

void addPointOnCurve(EquationBuilder& builder) {
    addPointOnCurve(builder, pointRef(builder, 0), builder.ref(1));
}

void addSymmetric(EquationBuilder& builder) {
    const SketchData& sketch = builder.sketch();
    const auto p = pointAt(sketch, builder.ref(0)), q = pointAt(sketch, builder.ref(1));
    const auto centre = pointAt(sketch, builder.ref(2));
    if (p && q && centre) {
        builder.add(formOf(ResidualKind::inverted, 2), {*p, *q, *centre});
        return;
    }
    const Operand axis = builder.need(lineAt(sketch, curveOf(builder.ref(2))));
    if (p && q)
        addMirrored(builder, *p, *q, axis);
    else
        addMirroredCurves(builder, axis);
}

void addEllipseHelper(EquationBuilder& builder) {
    const Operand ellipse = builder.need(ellipseAt(builder.sketch(), curveOf(builder.ref(1))));
    const EllipseHelper role = builder.constraint().helper;
    if (role == EllipseHelper::focus1 || role == EllipseHelper::focus2) {
        const Operand focus = pointRef(builder, 0);
        Equation form = formOf(ResidualKind::ellipseFocus, 2);
        const Operand major{OperandKind::segment, {}, {}};
        const double ux = builder.reference(ellipse.inputs[2]), uy = builder.reference(ellipse.inputs[3]);
        const double x = builder.reference(focus.inputs[0]) - builder.reference(ellipse.inputs[0]);
        const double y = builder.reference(focus.inputs[1]) - builder.reference(ellipse.inputs[1]);
        form.sign = ux * x + uy * y < 0.0 ? -1.0 : 1.0;
        builder.add(form, {focus, ellipse});
        return;
    }
    const Operand line = builder.need(lineAt(builder.sketch(), curveOf(builder.ref(0))));
    if (line.kind != OperandKind::segment || role == EllipseHelper::none)
        builder.refusePlaces();
    Equation form = formOf(ResidualKind::ellipseVertex, 2);
    form.mode = role == EllipseHelper::majorDiameter ? 0 : 1;
    double ux = builder.reference(ellipse.inputs[2]), uy = builder.reference(ellipse.inputs[3]);
    if (role == EllipseHelper::minorDiameter)
        ux = -std::exchange(uy, ux);
    const double x = builder.reference(line.inputs[2]) - builder.reference(line.inputs[0]);
    const double y = builder.reference(line.inputs[3]) - builder.reference(line.inputs[1]);
    for (std::size_t which = 0; which < 2; ++which) {
        const double side = which == 0 ? -1.0 : 1.0;
        form.sign = ux * x + uy * y < 0.0 ? -side : side;
        builder.add(form, {endOfLine(line, which), ellipse});
    }
}

}  // namespace holdfast::solver::detail
