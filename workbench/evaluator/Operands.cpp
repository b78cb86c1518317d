#include "workbench/evaluator/Operands.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "workbench/evaluator/SplineBasis.h"

namespace holdfast {

namespace {

using enum PlaceKind;

const FigureEntity& entityAt(const Figure& figure, int entity) {
    return figure.entities[static_cast<std::size_t>(entity)];
}

std::vector<int> run(int first, int count) {
    std::vector<int> result(static_cast<std::size_t>(count));
    std::iota(result.begin(), result.end(), first);
    return result;
}

Operand pointFrom(int firstValue) {
    return {OperandKind::point, {firstValue, firstValue + 1}, {}};
}

Operand segmentPoints(const Figure& figure, CurveRef curve, OperandKind kind) {
    const int p = figure.vertexValue(curve.entity, curve.segment);
    const int q = figure.vertexValue(curve.entity, curve.segment + 1);
    return {kind, {p, p + 1, q, q + 1}, {}};
}

int bulgeOf(const FigureEntity& entity, int segment) {
    return entity.bulgeValues[static_cast<std::size_t>(segment)];
}

Operand bulgePart(const Figure& figure, CurveRef curve, OperandKind kind) {
    Operand operand = segmentPoints(figure, curve, kind);
    operand.inputs.push_back(bulgeOf(entityAt(figure, curve.entity), curve.segment));
    return operand;
}

std::optional<Operand> startPoint(const Figure& figure, int number) {
    const FigureEntity& entity = entityAt(figure, number);
    switch (entity.kind) {
        case FigureKind::line:
        case FigureKind::ray:
        case FigureKind::xline:
        case FigureKind::point:
        case FigureKind::text:
            return pointFrom(entity.firstValue);
        case FigureKind::arc:
            return pointFrom(entity.firstValue + 3);
        case FigureKind::ellipticalArc:
            return pointFrom(entity.firstValue + 5);
        case FigureKind::spline: {
            const FigureSpline& spline = figure.splines[static_cast<std::size_t>(entity.spline)];
            if (isClampedAtStart(spline))
                return pointFrom(entity.firstValue);
            return splineAtConstant(figure, number, OperandKind::splinePoint, splineRange(spline).first);
        }
        default:
            return std::nullopt;
    }
}

std::optional<Operand> endPoint(const Figure& figure, int number) {
    const FigureEntity& entity = entityAt(figure, number);
    switch (entity.kind) {
        case FigureKind::line:
            return pointFrom(entity.firstValue + 2);
        case FigureKind::arc:
            return pointFrom(entity.firstValue + 5);
        case FigureKind::ellipticalArc:
            return pointFrom(entity.firstValue + 7);
        case FigureKind::point:
            return pointFrom(entity.firstValue);
        case FigureKind::spline: {
            const FigureSpline& spline = figure.splines[static_cast<std::size_t>(entity.spline)];
            if (isClampedAtEnd(spline))
                return pointFrom(entity.firstValue + entity.valueCount - 2);
            return splineAtConstant(figure, number, OperandKind::splinePoint, splineRange(spline).last);
        }
        default:
            return std::nullopt;
    }
}

std::optional<Operand> centrePoint(const FigureEntity& entity) {
    switch (entity.kind) {
        case FigureKind::circle:
        case FigureKind::arc:
        case FigureKind::ellipse:
        case FigureKind::ellipticalArc:
            return pointFrom(entity.firstValue);
        default:
            return std::nullopt;
    }
}

std::optional<Operand> middlePoint(const FigureEntity& entity) {
    switch (entity.kind) {
        case FigureKind::line:
            return Operand{OperandKind::middle, run(entity.firstValue, 4), {}};
        case FigureKind::arc:
            return Operand{OperandKind::arcMiddle, run(entity.firstValue, 7), {}};
        case FigureKind::xline:
            return pointFrom(entity.firstValue);
        default:
            return std::nullopt;
    }
}

std::optional<Operand> segmentPlace(const Figure& figure, const FigurePlace& place) {
    const FigureEntity& entity = entityAt(figure, place.entity);
    if (entity.kind != FigureKind::polyline || place.index < 0 || place.index >= entity.segmentCount())
        return std::nullopt;
    const CurveRef curve{place.entity, place.index};
    const bool isArc = bulgeOf(entity, place.index) >= 0;
    switch (place.kind) {
        case segmentStart:
            return pointFrom(figure.vertexValue(place.entity, place.index));
        case segmentEnd:
            return pointFrom(figure.vertexValue(place.entity, place.index + 1));
        case segmentMid:
            return isArc ? bulgePart(figure, curve, OperandKind::bulgeMiddle)
                         : segmentPoints(figure, curve, OperandKind::middle);
        case segmentCentre:
            if (isArc)
                return bulgePart(figure, curve, OperandKind::bulgeCentre);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Operand> controlPoint(const FigureEntity& entity, int index) {
    if (entity.kind != FigureKind::spline || index < 0 || 2 * index >= entity.valueCount)
        return std::nullopt;
    return pointFrom(entity.firstValue + 2 * index);
}

bool isEndPlace(PlaceKind kind) {
    return kind == end || kind == segmentEnd;
}

double distance(std::span<const double> v, int a, int b) {
    return std::hypot(v[static_cast<std::size_t>(b)] - v[static_cast<std::size_t>(a)],
                      v[static_cast<std::size_t>(b + 1)] - v[static_cast<std::size_t>(a + 1)]);
}

double controlExtent(std::span<const double> v, const FigureEntity& entity) {
    double extent = 0.0;
    for (int i = 2; i < entity.valueCount; i += 2)
        extent = std::max(extent, distance(v, entity.firstValue, entity.firstValue + i));
    return extent;
}

const char* kindName(FigureKind kind) {
    constexpr const char* names[] = {"line",           "ray",   "xline", "circle", "arc",     "ellipse",
                                     "elliptical arc", "point", "text",  "spline", "polyline"};
    return names[static_cast<std::size_t>(kind)];
}

}  // namespace

CurveRef curveOf(const FigurePlace& place) {
    const bool ofSegment = place.kind == segment || place.kind == segmentStart || place.kind == segmentEnd ||
                           place.kind == segmentMid || place.kind == segmentCentre;
    return {place.entity, ofSegment ? place.index : -1};
}

std::optional<Operand> pointAt(const Figure& figure, const FigurePlace& place) {
    const FigureEntity& entity = entityAt(figure, place.entity);
    switch (place.kind) {
        case whole:
            if (entity.kind == FigureKind::point || entity.kind == FigureKind::text)
                return pointFrom(entity.firstValue);
            return std::nullopt;
        case start:
            return startPoint(figure, place.entity);
        case end:
            return endPoint(figure, place.entity);
        case centre:
            return centrePoint(entity);
        case mid:
            return middlePoint(entity);
        case control:
            return controlPoint(entity, place.index);
        case segment:
            return std::nullopt;
        default:
            return segmentPlace(figure, place);
    }
}

std::optional<Operand> lineAt(const Figure& figure, CurveRef curve) {
    const FigureEntity& entity = entityAt(figure, curve.entity);
    switch (entity.kind) {
        case FigureKind::line:
            return Operand{OperandKind::segment, run(entity.firstValue, 4), {}};
        case FigureKind::ray:
        case FigureKind::xline:
        case FigureKind::text:
            return Operand{OperandKind::axis, run(entity.firstValue, 3), {}};
        case FigureKind::polyline:
            if (curve.segment >= 0 && curve.segment < entity.segmentCount() && bulgeOf(entity, curve.segment) < 0)
                return segmentPoints(figure, curve, OperandKind::segment);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Operand> circleAt(const Figure& figure, CurveRef curve) {
    const FigureEntity& entity = entityAt(figure, curve.entity);
    switch (entity.kind) {
        case FigureKind::circle:
        case FigureKind::arc:
            return Operand{OperandKind::circle, run(entity.firstValue, 3), {}};
        case FigureKind::polyline:
            if (curve.segment >= 0 && curve.segment < entity.segmentCount() && bulgeOf(entity, curve.segment) >= 0)
                return bulgePart(figure, curve, OperandKind::bulgeCircle);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Operand> ellipseAt(const Figure& figure, CurveRef curve) {
    const FigureEntity& entity = entityAt(figure, curve.entity);
    if (entity.kind != FigureKind::ellipse && entity.kind != FigureKind::ellipticalArc)
        return std::nullopt;
    return Operand{OperandKind::ellipse, run(entity.firstValue, 5), {}};
}

std::optional<Operand> curveAt(const Figure& figure, const FigurePlace& place) {
    const CurveRef curve = curveOf(place);
    if (auto line = lineAt(figure, curve))
        return line;
    if (auto circle = circleAt(figure, curve))
        return circle;
    if (auto ellipse = ellipseAt(figure, curve))
        return ellipse;
    if (!isSplineCurve(figure, curve) || (place.kind != start && place.kind != end))
        return std::nullopt;
    const FigureEntity& entity = entityAt(figure, place.entity);
    const SplineRange range = splineRange(figure.splines[static_cast<std::size_t>(entity.spline)]);
    return splineAtConstant(figure, place.entity, OperandKind::splineJet,
                            isEndPlace(place.kind) ? range.last : range.first);
}

bool isSplineCurve(const Figure& figure, CurveRef curve) {
    return entityAt(figure, curve.entity).kind == FigureKind::spline;
}

Operand splineAt(const Figure& figure, int number, OperandKind kind, int paramValue) {
    const FigureEntity& entity = entityAt(figure, number);
    Operand operand{kind, {paramValue}, {entity.spline, true, 0.0}};
    const std::vector<int> control = run(entity.firstValue, entity.valueCount);
    operand.inputs.insert(operand.inputs.end(), control.begin(), control.end());
    return operand;
}

Operand splineAtConstant(const Figure& figure, int number, OperandKind kind, double param) {
    const FigureEntity& entity = entityAt(figure, number);
    const SplineBasis basis = splineBasis(figure.splines[static_cast<std::size_t>(entity.spline)], param);
    Operand operand{kind, {}, {entity.spline, false, param}};
    for (int i = 0; i < basis.count; ++i) {
        const int x = entity.firstValue + 2 * basis.control(i);
        operand.inputs.insert(operand.inputs.end(), {x, x + 1});
    }
    return operand;
}

bool isDirect(const Operand& operand) {
    return operand.kind == OperandKind::point;
}

std::optional<Operand> startOf(const Figure& figure, CurveRef curve) {
    return pointAt(figure, {curve.entity, curve.segment < 0 ? start : segmentStart, std::max(curve.segment, 0)});
}

std::optional<Operand> endOf(const Figure& figure, CurveRef curve) {
    return pointAt(figure, {curve.entity, curve.segment < 0 ? end : segmentEnd, std::max(curve.segment, 0)});
}

std::string nameOf(const Figure& figure, const FigurePlace& place) {
    const FigureEntity& entity = entityAt(figure, place.entity);
    const std::string name = std::string(kindName(entity.kind)) + " " + entity.id;
    switch (place.kind) {
        case whole:
            return name;
        case start:
            return "the start of " + name;
        case end:
            return "the end of " + name;
        case centre:
            return "the centre of " + name;
        case mid:
            return "the middle of " + name;
        case control:
            return "control point " + std::to_string(place.index) + " of " + name;
        default:
            return "segment " + std::to_string(place.index) + " of " + name;
    }
}

double sizeOf(const Figure& figure, CurveRef curve, double unbounded) {
    const FigureEntity& entity = entityAt(figure, curve.entity);
    const std::span<const double> v = figure.reference;
    switch (entity.kind) {
        case FigureKind::line:
            return distance(v, entity.firstValue, entity.firstValue + 2);
        case FigureKind::circle:
        case FigureKind::arc:
            return std::abs(v[static_cast<std::size_t>(entity.firstValue + 2)]);
        case FigureKind::ellipse:
        case FigureKind::ellipticalArc:
            return std::hypot(v[static_cast<std::size_t>(entity.firstValue + 2)],
                              v[static_cast<std::size_t>(entity.firstValue + 3)]);
        case FigureKind::text:
            return entity.textHeight;
        case FigureKind::spline:
            return controlExtent(v, entity);
        case FigureKind::polyline:
            return distance(v, figure.vertexValue(curve.entity, std::max(curve.segment, 0)),
                            figure.vertexValue(curve.entity, std::max(curve.segment, 0) + 1));
        case FigureKind::ray:
        case FigureKind::xline:
        case FigureKind::point:
            break;
    }
    return unbounded;
}

}  // namespace holdfast
