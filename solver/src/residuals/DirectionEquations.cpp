#include <cmath>
#include <numbers>

#include "solver/src/residuals/EquationBuilder.h"

/// Directions and equal sizes: parallel, perpendicular, collinear, angle, equal.
namespace holdfast::solver::detail {

namespace {

Operand lineRef(EquationBuilder& builder, std::size_t i) {
    const SketchPlace& place = builder.ref(i);
    return builder.need(lineAt(builder.sketch(), curveOf(place)), place, "a line");
}

Equation directionForm(EquationBuilder& builder, DirectionMode mode) {
    Equation form = formOf(ResidualKind::directions);
    form.mode = static_cast<std::uint8_t>(mode);
    form.scale = turnScale(builder, curveOf(builder.ref(0)), curveOf(builder.ref(1)));
    return form;
}

Operand baseOf(const Operand& line) {
    return {OperandKind::point, {line.inputs[0], line.inputs[1]}, {}};
}

/// Both ends of the shorter line on the longer one: as good as direction and offset, and without a length to divide
/// by. Lines without ends have a direction.
void addCollinear(EquationBuilder& builder) {
    const Operand a = lineRef(builder, 0), b = lineRef(builder, 1);
    const bool isFirstMoved =
        a.kind == OperandKind::segment &&
        (b.kind == OperandKind::axis || sizeOf(builder.sketch(), curveOf(builder.ref(0)), 0.0) <=
                                            sizeOf(builder.sketch(), curveOf(builder.ref(1)), 0.0));
    const Operand &ends = isFirstMoved ? a : b, &carrier = isFirstMoved ? b : a;
    builder.add(formOf(ResidualKind::pointLine), {baseOf(ends), carrier});
    if (ends.kind == OperandKind::segment) {
        const Operand tip{OperandKind::point, {ends.inputs[2], ends.inputs[3]}, {}};
        builder.add(formOf(ResidualKind::pointLine), {tip, carrier});
        return;
    }
    builder.add(directionForm(builder, DirectionMode::parallel), {a, b});
}

void addTurn(EquationBuilder& builder, DirectionMode mode) {
    builder.add(directionForm(builder, mode), {lineRef(builder, 0), lineRef(builder, 1)});
}

/// A line across a circle at right angles runs through its centre.
bool addThroughCentre(EquationBuilder& builder, std::size_t line, std::size_t circle) {
    const auto carrier = lineAt(builder.sketch(), curveOf(builder.ref(line)));
    const auto round = circleAt(builder.sketch(), curveOf(builder.ref(circle)));
    if (!carrier || !round)
        return false;
    SketchPlace centre = builder.ref(circle);
    centre.kind = round->kind == OperandKind::circle ? PlaceKind::centre : PlaceKind::segmentCentre;
    builder.add(formOf(ResidualKind::pointLine), {*pointAt(builder.sketch(), centre), *carrier});
    return true;
}

double reversal(const SketchPlace& place) {
    return place.kind == PlaceKind::end || place.kind == PlaceKind::segmentEnd ? -1.0 : 1.0;
}

void addSweep(EquationBuilder& builder) {
    const SketchPlace& place = builder.ref(0);
    const CurveRef curve = curveOf(place);
    const Operand circle = builder.need(circleAt(builder.sketch(), curve), place, "a line or an arc");
    Equation form = formOf(ResidualKind::arcSweep);
    form.value = builder.constraint().value;
    form.scale = sizeOf(builder.sketch(), curve, builder.size());
    if (circle.kind == OperandKind::bulgeCircle) {
        form.residualKind = ResidualKind::bulgeSweep;
        builder.add(form, {Operand{OperandKind::scalar, {circle.inputs[4]}, {}}});
        return;
    }
    const Operand start = builder.need(startOf(builder.sketch(), curve), place, "an arc");
    builder.add(form, {circle, start, *endOf(builder.sketch(), curve)});
}

void addHeading(EquationBuilder& builder) {
    const SketchPlace& place = builder.ref(0);
    const auto line = lineAt(builder.sketch(), curveOf(place));
    if (!line) {
        addSweep(builder);
        return;
    }
    Equation form = formOf(ResidualKind::heading);
    form.value = builder.constraint().value;
    form.sign = reversal(place);
    form.scale = turnScale(builder, curveOf(place), curveOf(place));
    builder.add(form, {*line});
}

void addAngleAtPoint(EquationBuilder& builder) {
    Equation form = directionForm(builder, DirectionMode::angleModuloPi);
    form.value = builder.constraint().value;
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1), &at = builder.ref(2);
    builder.add(form, {builder.need(curveAt(builder.sketch(), a), a, "a curve with a direction there"),
                       builder.need(curveAt(builder.sketch(), b), b, "a curve with a direction there"),
                       builder.need(pointAt(builder.sketch(), at), at, "a point")});
}

}  // namespace

void addAngle(EquationBuilder& builder) {
    if (builder.constraint().refs.size() == 1) {
        addHeading(builder);
        return;
    }
    if (builder.constraint().refs.size() == 3) {
        addAngleAtPoint(builder);
        return;
    }
    Equation form = directionForm(builder, DirectionMode::angle);
    form.value = builder.constraint().value;
    form.sign = reversal(builder.ref(0)) * reversal(builder.ref(1));
    builder.add(form, {lineRef(builder, 0), lineRef(builder, 1)});
}

void addDirectionEquations(EquationBuilder& builder) {
    switch (builder.constraint().type) {
        case ConstraintType::parallel:
            addTurn(builder, DirectionMode::parallel);
            return;
        case ConstraintType::collinear:
            addCollinear(builder);
            return;
        default:
            break;
    }
    const bool hasPlaces =
        builder.constraint().refs.size() == 3 || isEndPlace(builder.ref(0)) || isEndPlace(builder.ref(1));
    const auto a = lineAt(builder.sketch(), curveOf(builder.ref(0)));
    const auto b = lineAt(builder.sketch(), curveOf(builder.ref(1)));
    if (hasPlaces)
        addTangency(builder);
    else if (a && b)
        addTurn(builder, DirectionMode::perpendicular);
    else if (!addThroughCentre(builder, 0, 1) && !addThroughCentre(builder, 1, 0))
        builder.fail("two lines, or a line and a circle, can be perpendicular; others need the point where they are");
}

void addEqualSizes(EquationBuilder& builder) {
    const SketchData& sketch = builder.sketch();
    const CurveRef one = curveOf(builder.ref(0)), two = curveOf(builder.ref(1));
    if (const auto a = lineAt(sketch, one), b = lineAt(sketch, two);
        a && b && a->kind == OperandKind::segment && b->kind == OperandKind::segment) {
        builder.add(formOf(ResidualKind::equalLengths), {*a, *b});
    } else if (const auto c = circleAt(sketch, one), d = circleAt(sketch, two); c && d) {
        builder.add(formOf(ResidualKind::equalRadii), {*c, *d});
    } else if (const auto e = ellipseAt(sketch, one), f = ellipseAt(sketch, two); e && f) {
        builder.add(formOf(ResidualKind::equalMajorRadii), {*e, *f});
        builder.add(formOf(ResidualKind::equalScalars), {Operand{OperandKind::scalar, {e->inputs[4]}, {}},
                                                         Operand{OperandKind::scalar, {f->inputs[4]}, {}}});
    } else {
        builder.fail(nameOf(sketch, builder.ref(0)) + " and " + nameOf(sketch, builder.ref(1)) +
                     " have no size in common; two lines, two circles or arcs, or two ellipses have");
    }
}

}  // namespace holdfast::solver::detail
