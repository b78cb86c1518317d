#include <array>
#include <cmath>

#include "solver/src/residuals/ResidualBuilders.h"

/// Distances in all their forms, radii and diameters. Sides and inner or outer gaps are read off the reference.
namespace holdfast::solver::detail {

namespace {

Equation valueForm(EquationBuilder& builder, ResidualKind residualKind) {
    Equation form = formOf(residualKind);
    form.value = builder.target();
    return form;
}

/// Adds the form, with the sign of the two under which it is nearer to holding at the reference.
void addOnNearerSide(EquationBuilder& builder, Equation form, std::initializer_list<Operand> operands) {
    const double left = std::abs(builder.residualAtReference(form, operands));
    form.sign = -1.0;
    const double right = std::abs(builder.residualAtReference(form, operands));
    form.sign = left <= right ? 1.0 : -1.0;
    builder.add(form, operands);
}

void addLength(EquationBuilder& builder) {
    const CurveRef curve = curveOf(builder.ref(0));
    if (const auto line = lineAt(builder.sketch(), curve); line && line->kind == OperandKind::segment) {
        builder.add(valueForm(builder, ResidualKind::lineLength), {*line});
        return;
    }
    const Operand circle = builder.need(circleAt(builder.sketch(), curve));
    if (circle.kind == OperandKind::bulgeCircle) {
        const Operand bulge{OperandKind::scalar, {circle.inputs[4]}, {}};
        builder.add(valueForm(builder, ResidualKind::bulgeLength), {circle, bulge});
        return;
    }
    const Operand start = builder.need(startOf(builder.sketch(), curve));
    builder.add(valueForm(builder, ResidualKind::arcLength), {circle, start, *endOf(builder.sketch(), curve)});
}

bool addPointGap(EquationBuilder& builder, const Operand& point, CurveRef curve) {
    if (const auto line = lineAt(builder.sketch(), curve)) {
        addOnNearerSide(builder, valueForm(builder, ResidualKind::pointLine), {point, *line});
        return true;
    }
    if (const auto circle = circleAt(builder.sketch(), curve)) {
        addOnNearerSide(builder, valueForm(builder, ResidualKind::pointCircle), {point, *circle});
        return true;
    }
    return false;
}

/// Of several ways in which two curves can lie to each other, the one nearest to holding at the reference.
void addNearest(EquationBuilder& builder, std::span<const Equation> forms, std::initializer_list<Operand> operands) {
    const Equation* best = nullptr;
    double least = 0.0;
    for (const Equation& form : forms) {
        const double miss = std::abs(builder.residualAtReference(form, operands));
        if (best == nullptr || miss < least) {
            best = &form;
            least = miss;
        }
    }
    builder.add(*best, operands);
}

Equation gapForm(EquationBuilder& builder, ResidualKind residualKind, GapMode mode, double sign) {
    Equation form = valueForm(builder, residualKind);
    form.mode = static_cast<std::uint8_t>(mode);
    form.sign = sign;
    return form;
}

void addLineGap(EquationBuilder& builder, const Operand& line, const Operand& circle) {
    const std::array forms = {gapForm(builder, ResidualKind::lineCircle, GapMode::outside, 1.0),
                              gapForm(builder, ResidualKind::lineCircle, GapMode::outside, -1.0),
                              gapForm(builder, ResidualKind::lineCircle, GapMode::crossing, 1.0),
                              gapForm(builder, ResidualKind::lineCircle, GapMode::crossing, -1.0)};
    addNearest(builder, forms, {line, circle});
}

void addCircleGap(EquationBuilder& builder, const Operand& a, const Operand& b) {
    const std::array forms = {gapForm(builder, ResidualKind::circleCircle, GapMode::outside, 1.0),
                              gapForm(builder, ResidualKind::circleCircle, GapMode::inside, 1.0),
                              gapForm(builder, ResidualKind::circleCircle, GapMode::inside, -1.0),
                              gapForm(builder, ResidualKind::circleCircle, GapMode::crossing, 1.0)};
    addNearest(builder, forms, {a, b});
}

/// Where the gap of a line is measured: in its middle, or at the base of one without ends.
Operand gapPoint(const Operand& line) {
    if (line.kind == OperandKind::segment)
        return {OperandKind::middle, line.inputs, {}};
    return {OperandKind::point, {line.inputs[0], line.inputs[1]}, {}};
}

/// One equation, which leaves the directions free: lines that shall be parallel have a constraint that says so.
void addGapOfLines(EquationBuilder& builder, const Operand& carrier, const Operand& line) {
    addOnNearerSide(builder, valueForm(builder, ResidualKind::pointLine), {gapPoint(line), carrier});
}

bool addCurveGap(EquationBuilder& builder, CurveRef one, CurveRef two) {
    const SketchData& sketch = builder.sketch();
    const auto lineA = lineAt(sketch, one), lineB = lineAt(sketch, two);
    const auto circleA = circleAt(sketch, one), circleB = circleAt(sketch, two);
    if (!(lineA || circleA) || !(lineB || circleB))
        return false;
    if (circleA && circleB)
        addCircleGap(builder, *circleA, *circleB);
    else if (lineA && lineB)
        addGapOfLines(builder, *lineA, *lineB);
    else if (lineA)
        addLineGap(builder, *lineA, *circleB);
    else
        addLineGap(builder, *lineB, *circleA);
    return true;
}

}  // namespace

void addGap(EquationBuilder& builder) {
    if (builder.target() < 0.0)
        builder.fail("its value is below 0");
    if (builder.constraint().refs.size() == 1) {
        addLength(builder);
        return;
    }
    const SketchPlace &a = builder.ref(0), &b = builder.ref(1);
    const auto p = pointAt(builder.sketch(), a), q = pointAt(builder.sketch(), b);
    if (p && q && builder.target() == 0.0) {
        builder.add(formOf(ResidualKind::samePoint, 2), {*p, *q});
        return;
    }
    if (p && q) {
        builder.add(valueForm(builder, ResidualKind::pointsDistance), {*p, *q});
        return;
    }
    const bool isDone = p   ? addPointGap(builder, *p, curveOf(b))
                        : q ? addPointGap(builder, *q, curveOf(a))
                            : addCurveGap(builder, curveOf(a), curveOf(b));
    if (!isDone)
        builder.refusePlaces();
}

void addRadius(EquationBuilder& builder) {
    const Operand circle = builder.need(circleAt(builder.sketch(), curveOf(builder.ref(0))));
    builder.add(valueForm(builder, ResidualKind::radiusIs), {circle});
}

}  // namespace holdfast::solver::detail
