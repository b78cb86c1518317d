#include <cmath>
#include <numbers>

#include "solver/src/residuals/ResidualBuilders.h"

/// Directions and equal sizes: parallel, perpendicular, collinear, angle, equal.
namespace holdfast::solver::detail {

namespace {

Operand lineRef(EquationBuilder& builder, std::size_t i) {
    return builder.need(lineAt(builder.sketch(), curveOf(builder.ref(i))));
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
    const CurveRef curve = curveOf(builder.ref(0));
    const Operand circle = builder.need(circleAt(builder.sketch(), curve));
    Equation form = formOf(ResidualKind::arcSweep);
    form.value = builder.target();
    form.scale = sizeOf(builder.sketch(), curve, builder.size());
    if (circle.kind == OperandKind::bulgeCircle) {
        form.residualKind = ResidualKind::bulgeSweep;
        builder.add(form, {Operand{OperandKind::scalar, {circle.inputs[4]}, {}}});
        return;
    }
    const Operand start = builder.need(startOf(builder.sketch(), curve));
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
    form.value = builder.target();
    form.sign = reversal(place);
    form.scale = turnScale(builder, curveOf(place), curveOf(place));
    builder.add(form, {*line});
}

void addAngleAtPoint(EquationBuilder& builder) {
    Equation form = directionForm(builder, DirectionMode::angleModuloPi);
    form.value = builder.target();
    builder.add(form, {builder.need(curveAt(builder.sketch(), builder.ref(0))),
                       builder.need(curveAt(builder.sketch(), builder.ref(1))),
                       builder.need(pointAt(builder.sketch(), builder.ref(2)))});
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
    form.value = builder.target();
    form.sign = reversal(builder.ref(0)) * reversal(builder.ref(1));
    builder.add(form, {lineRef(builder, 0), lineRef(builder, 1)});
}

void addParallel(EquationBuilder& builder) {
    addTurn(builder, DirectionMode::parallel);
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

void addPerpendicular(EquationBuilder& builder) {
    const bool hasPlaces =
        builder.constraint().refs.size() == 3 || isEndPlace(builder.ref(0)) || isEndPlace(builder.ref(1));
    const auto a = lineAt(builder.sketch(), curveOf(builder.ref(0)));
    const auto b = lineAt(builder.sketch(), curveOf(builder.ref(1)));
    if (hasPlaces)
        addTangency(builder);
    else if (a && b)
        addTurn(builder, DirectionMode::perpendicular);
    else if (!addThroughCentre(builder, 0, 1) && !addThroughCentre(builder, 1, 0))
        builder.refusePlaces();
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
        builder.refusePlaces();
    }
}

}  // namespace holdfast::solver::detail
