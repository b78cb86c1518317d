#include <algorithm>
#include <cmath>
#include <numbers>

#include "solver/src/residuals/ResidualBuilders.h"

/// What constraints say by merging values once it is known which lines lie level or upright. A side is taken from the
/// reference, so that a folded constraint cannot turn over.
namespace holdfast::solver::detail {

namespace {

/// A line along an axis of the sketch: the value that is the same all along it.
struct AxisLine {
    std::size_t across = 0;  ///< 0: upright, its x is constant; 1: level
    int value = -1;
};

std::optional<AxisLine> axisLineOf(EquationBuilder& builder, const Operand& line) {
    if (line.kind == OperandKind::segment) {
        double dx = 1.0, dy = 1.0;
        const bool isUpright = builder.differByConstant(line.inputs[0], line.inputs[2], dx) && dx == 0.0;
        const bool isLevel = builder.differByConstant(line.inputs[1], line.inputs[3], dy) && dy == 0.0;
        if (isUpright == isLevel)
            return std::nullopt;
        return isUpright ? AxisLine{0, line.inputs[0]} : AxisLine{1, line.inputs[1]};
    }
    constexpr double tiny = 1e-14;
    if (!builder.isConstant(line.inputs[2]))
        return std::nullopt;
    const double angle = builder.constantOf(line.inputs[2]);
    if (std::abs(std::sin(angle)) < tiny)
        return AxisLine{1, line.inputs[1]};
    if (std::abs(std::cos(angle)) < tiny)
        return AxisLine{0, line.inputs[0]};
    return std::nullopt;
}

std::optional<AxisLine> axisLineAt(EquationBuilder& builder, const SketchPlace& place) {
    const auto line = lineAt(builder.sketch(), curveOf(place));
    return line ? axisLineOf(builder, *line) : std::nullopt;
}

/// b - a of two values at the reference: the side that a distance keeps.
double sideOf(const EquationBuilder& builder, int a, int b) {
    return builder.reference(b) < builder.reference(a) ? -1.0 : 1.0;
}

/// Two points at a distance: the other coordinate follows when one difference is known.
bool foldPointDistance(EquationBuilder& builder, const Operand& p, const Operand& q, double distance) {
    for (std::size_t known = 0; known < 2; ++known) {
        double delta = 0.0;
        if (!builder.differByConstant(p.inputs[known], q.inputs[known], delta) || std::abs(delta) > distance)
            continue;
        const std::size_t other = 1 - known;
        double already = 0.0;
        const double left = std::sqrt(distance * distance - delta * delta);
        // A difference that is known already decides the side better than the reference does.
        const bool isKnown = builder.differByConstant(p.inputs[other], q.inputs[other], already);
        const double side = isKnown ? (already < 0.0 ? -1.0 : 1.0) : sideOf(builder, p.inputs[other], q.inputs[other]);
        builder.tie(q.inputs[other], p.inputs[other], 1.0, side * left);
        return true;
    }
    return false;
}

/// Ties a coordinate to that of a line along an axis, on the side that is known or was at the reference.
void tieBeside(EquationBuilder& builder, int coordinate, const AxisLine& line) {
    double already = 0.0;
    const bool isKnown = builder.differByConstant(line.value, coordinate, already);
    const double side = isKnown ? (already < 0.0 ? -1.0 : 1.0) : sideOf(builder, line.value, coordinate);
    builder.tie(coordinate, line.value, 1.0, side * builder.target());
}

bool foldPointLineDistance(EquationBuilder& builder, const SketchPlace& a, const SketchPlace& b) {
    const auto point = pointAt(builder.sketch(), a);
    const auto line = axisLineAt(builder, b);
    if (!point || !isDirect(*point) || !line)
        return false;
    tieBeside(builder, point->inputs[line->across], *line);
    return true;
}

/// Lines along the same axis are as far apart everywhere.
bool foldGapOfLines(EquationBuilder& builder, const SketchPlace& a, const SketchPlace& b) {
    const auto one = axisLineAt(builder, a), two = axisLineAt(builder, b);
    if (!one || !two || one->across != two->across || pointAt(builder.sketch(), a) || pointAt(builder.sketch(), b))
        return false;
    tieBeside(builder, two->value, *one);
    return true;
}

}  // namespace

bool foldGap(EquationBuilder& builder) {
    const SketchPlace& a = builder.ref(0);
    const double distance = builder.target();
    if (builder.constraint().refs.size() == 1) {
        const auto line = lineAt(builder.sketch(), curveOf(a));
        if (!line || line->kind != OperandKind::segment)
            return false;
        const Operand p{OperandKind::point, {line->inputs[0], line->inputs[1]}, {}};
        const Operand q{OperandKind::point, {line->inputs[2], line->inputs[3]}, {}};
        return foldPointDistance(builder, p, q, distance);
    }
    const SketchPlace& b = builder.ref(1);
    const auto p = pointAt(builder.sketch(), a), q = pointAt(builder.sketch(), b);
    if (p && q)
        return isDirect(*p) && isDirect(*q) && foldPointDistance(builder, *p, *q, distance);
    return foldPointLineDistance(builder, a, b) || foldPointLineDistance(builder, b, a) ||
           foldGapOfLines(builder, a, b);
}

bool foldPointOnCurve(EquationBuilder& builder) {
    const auto point = pointAt(builder.sketch(), builder.ref(0));
    const auto line = axisLineAt(builder, builder.ref(1));
    if (!point || !isDirect(*point) || !line)
        return false;
    builder.notePointOn(*point, curveOf(builder.ref(1)));
    builder.tie(point->inputs[line->across], line->value, 1.0, 0.0);
    return true;
}

namespace {

/// Makes a segment level or upright, whichever the other one asks for.
bool alignTo(EquationBuilder& builder, const std::optional<AxisLine>& other, const Operand& line, bool isTurned) {
    if (!other || line.kind != OperandKind::segment)
        return false;
    const std::size_t across = isTurned ? 1 - other->across : other->across;
    builder.tie(line.inputs[2 + across], line.inputs[across], 1.0, 0.0);
    return true;
}

bool foldDirections(EquationBuilder& builder, bool isTurned) {
    const auto a = lineAt(builder.sketch(), curveOf(builder.ref(0)));
    const auto b = lineAt(builder.sketch(), curveOf(builder.ref(1)));
    if (!a || !b || builder.constraint().refs.size() != 2)
        return false;
    return alignTo(builder, axisLineOf(builder, *a), *b, isTurned) ||
           alignTo(builder, axisLineOf(builder, *b), *a, isTurned);
}

}  // namespace

bool foldParallel(EquationBuilder& builder) {
    return foldDirections(builder, false);
}

/// Between an end and a whole line it says two things: that the end lies on the line, too. Two ends are tied before.
bool foldPerpendicular(EquationBuilder& builder) {
    const bool isOfAnEnd = isEndPlace(builder.ref(0)) != isEndPlace(builder.ref(1));
    return !isOfAnEnd && foldDirections(builder, true);
}

bool foldCollinear(EquationBuilder& builder) {
    const auto a = axisLineAt(builder, builder.ref(0)), b = axisLineAt(builder, builder.ref(1));
    if (!foldDirections(builder, false))
        return false;
    const AxisLine line = a ? *a : *b;
    const auto other = lineAt(builder.sketch(), curveOf(builder.ref(a ? 1 : 0)));
    builder.tie(other->inputs[line.across], line.value, 1.0, 0.0);
    return true;
}

namespace {

bool foldMirror(EquationBuilder& builder, const Operand& p, const Operand& q) {
    const auto axis = axisLineAt(builder, builder.ref(2));
    if (!axis || !builder.isConstant(axis->value))
        return false;
    const std::size_t along = 1 - axis->across;
    builder.tie(q.inputs[along], p.inputs[along], 1.0, 0.0);
    builder.tie(q.inputs[axis->across], p.inputs[axis->across], -1.0, 2.0 * builder.constantOf(axis->value));
    return true;
}

bool foldInversion(EquationBuilder& builder, const Operand& p, const Operand& q, const Operand& centre) {
    if (!builder.isConstant(centre.inputs[0]) || !builder.isConstant(centre.inputs[1]))
        return false;
    for (std::size_t i = 0; i < 2; ++i)
        builder.tie(q.inputs[i], p.inputs[i], -1.0, 2.0 * builder.constantOf(centre.inputs[i]));
    return true;
}

}  // namespace

bool foldSymmetric(EquationBuilder& builder) {
    const auto p = pointAt(builder.sketch(), builder.ref(0)), q = pointAt(builder.sketch(), builder.ref(1));
    if (!p || !q || !isDirect(*p) || !isDirect(*q))
        return false;
    const auto centre = pointAt(builder.sketch(), builder.ref(2));
    if (centre)
        return isDirect(*centre) && foldInversion(builder, *p, *q, *centre);
    return foldMirror(builder, *p, *q);
}

namespace {

/// Length of a level or upright line when it is a constant, with the coordinate that runs along it.
std::optional<double> constantLength(EquationBuilder& builder, const Operand& line) {
    double dx = 0.0, dy = 0.0;
    if (line.kind != OperandKind::segment || !builder.differByConstant(line.inputs[0], line.inputs[2], dx) ||
        !builder.differByConstant(line.inputs[1], line.inputs[3], dy))
        return std::nullopt;
    return std::hypot(dx, dy);
}

bool takeLength(EquationBuilder& builder, std::optional<double> length, const Operand& line) {
    if (!length || line.kind != OperandKind::segment)
        return false;
    const Operand p{OperandKind::point, {line.inputs[0], line.inputs[1]}, {}};
    const Operand q{OperandKind::point, {line.inputs[2], line.inputs[3]}, {}};
    return foldPointDistance(builder, p, q, *length);
}

}  // namespace

bool foldEqualSizes(EquationBuilder& builder) {
    const auto a = lineAt(builder.sketch(), curveOf(builder.ref(0)));
    const auto b = lineAt(builder.sketch(), curveOf(builder.ref(1)));
    if (!a || !b)
        return false;
    return takeLength(builder, constantLength(builder, *a), *b) || takeLength(builder, constantLength(builder, *b), *a);
}

}  // namespace holdfast::solver::detail
