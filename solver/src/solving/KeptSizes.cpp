#include <cmath>

#include "solver/src/residuals/EquationBuilder.h"

/// The intrinsic sizes of the elements, for edits that may turn and shift but not stretch them.
namespace holdfast::solver::detail {

namespace {

/// Keeps what the form measures at the value that it has at the reference.
void keep(EquationBuilder& builder, Equation form, std::initializer_list<Operand> operands, double weight) {
    form.value = 0.0;
    form.value = builder.residualAtReference(form, operands) / form.scale;
    builder.addWish(form, operands, weight);
}

Operand between(int firstX, int secondX) {
    return {OperandKind::segment, {firstX, firstX + 1, secondX, secondX + 1}, {}};
}

void keepLength(EquationBuilder& builder, const Operand& segment, double weight) {
    keep(builder, formOf(ResidualKind::lineLength), {segment}, weight);
}

void keepScalar(EquationBuilder& builder, int value, double scale, double weight) {
    Equation form = formOf(ResidualKind::scalarIs);
    form.scale = scale;
    keep(builder, form, {Operand{OperandKind::scalar, {value}, {}}}, weight);
}

void keepArc(EquationBuilder& builder, int entity, double weight) {
    const CurveRef curve{entity, -1};
    const Operand circle = *circleAt(builder.sketch(), curve);
    keep(builder, formOf(ResidualKind::radiusIs), {circle}, weight);
    Equation form = formOf(ResidualKind::arcSweep);
    form.scale = sizeOf(builder.sketch(), curve, builder.size());
    keep(builder, form, {circle, *startOf(builder.sketch(), curve), *endOf(builder.sketch(), curve)}, weight);
}

void keepEllipse(EquationBuilder& builder, const SketchEntity& entity, double weight) {
    const int zero = builder.addConstant(0.0), axis = entity.firstValue + 2;
    keepLength(builder, {OperandKind::segment, {zero, zero, axis, axis + 1}, {}}, weight);
    keepScalar(builder, entity.firstValue + 4, 1.0, weight);
}

void keepPolyline(EquationBuilder& builder, int number, double weight) {
    const SketchEntity& entity = builder.sketch().entities[static_cast<std::size_t>(number)];
    for (int i = 0; i < entity.segmentCount(); ++i) {
        const int p = builder.sketch().vertexValue(number, i), q = builder.sketch().vertexValue(number, i + 1);
        keepLength(builder, between(p, q), weight);
        const int bulge = entity.bulgeValues[static_cast<std::size_t>(i)];
        if (bulge >= 0)
            keepScalar(builder, bulge, sizeOf(builder.sketch(), {number, i}, builder.size()), weight);
    }
}

}  // namespace

void addKeptSizes(EquationBuilder& builder, int number, double weight) {
    const SketchEntity& entity = builder.sketch().entities[static_cast<std::size_t>(number)];
    const int first = entity.firstValue;
    switch (entity.kind) {
        case EntityKind::line:
            keepLength(builder, between(first, first + 2), weight);
            break;
        case EntityKind::circle:
            keepScalar(builder, first + 2, 1.0, weight);
            break;
        case EntityKind::arc:
            keepArc(builder, number, weight);
            break;
        case EntityKind::ellipse:
        case EntityKind::ellipticalArc:
            keepEllipse(builder, entity, weight);
            break;
        case EntityKind::polyline:
            keepPolyline(builder, number, weight);
            break;
        case EntityKind::spline:
            for (int i = 2; i < entity.valueCount; i += 2)
                keepLength(builder, between(first + i - 2, first + i), weight);
            break;
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::point:
        case EntityKind::text:
            break;
    }
}

}  // namespace holdfast::solver::detail
