#include "solver/src/residuals/Operands.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "geometry/SplineBasis.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

using enum PlaceKind;

const SketchEntity& entityAt(const SketchData& sketch, int entity) {
    return sketch.entities[at(entity)];
}

std::vector<int> run(int first, int count) {
    std::vector<int> result(at(count));
    std::iota(result.begin(), result.end(), first);
    return result;
}

Operand pointFrom(int firstValue) {
    return {OperandKind::point, {firstValue, firstValue + 1}, {}};
}

Operand segmentPoints(const SketchData& sketch, CurveRef curve, OperandKind kind) {
    const int p = sketch.vertexValue(curve.entity, curve.segment);
    const int q = sketch.vertexValue(curve.entity, curve.segment + 1);
    return {kind, {p, p + 1, q, q + 1}, {}};
}

int bulgeOf(const SketchEntity& entity, int segment) {
    return entity.bulgeValues[at(segment)];
}

Operand bulgePart(const SketchData& sketch, CurveRef curve, OperandKind kind) {
    Operand operand = segmentPoints(sketch, curve, kind);
    operand.inputs.push_back(bulgeOf(entityAt(sketch, curve.entity), curve.segment));
    return operand;
}

std::optional<Operand> startPoint(const SketchData& sketch, int number) {
    const SketchEntity& entity = entityAt(sketch, number);
    switch (entity.kind) {
        case EntityKind::line:
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::point:
        case EntityKind::text:
            return pointFrom(entity.firstValue);
        case EntityKind::arc:
            return pointFrom(entity.firstValue + 3);
        case EntityKind::ellipticalArc:
            return pointFrom(entity.firstValue + 5);
        case EntityKind::spline: {
            const SplineKnots& spline = sketch.splines[at(entity.spline)];
            if (isClampedAtStart(spline))
                return pointFrom(entity.firstValue);
            return splineAtConstant(sketch, number, OperandKind::splinePoint, splineRange(spline).first);
        }
        default:
            return std::nullopt;
    }
}

std::optional<Operand> endPoint(const SketchData& sketch, int number) {
    const SketchEntity& entity = entityAt(sketch, number);
    switch (entity.kind) {
        case EntityKind::line:
            return pointFrom(entity.firstValue + 2);
        case EntityKind::arc:
            return pointFrom(entity.firstValue + 5);
        case EntityKind::ellipticalArc:
            return pointFrom(entity.firstValue + 7);
        case EntityKind::point:
            return pointFrom(entity.firstValue);
        case EntityKind::spline: {
            const SplineKnots& spline = sketch.splines[at(entity.spline)];
            if (isClampedAtEnd(spline))
                return pointFrom(entity.firstValue + entity.valueCount - 2);
            return splineAtConstant(sketch, number, OperandKind::splinePoint, splineRange(spline).last);
        }
        default:
            return std::nullopt;
    }
}

std::optional<Operand> centrePoint(const SketchEntity& entity) {
    switch (entity.kind) {
        case EntityKind::circle:
        case EntityKind::arc:
        case EntityKind::ellipse:
        case EntityKind::ellipticalArc:
            return pointFrom(entity.firstValue);
        default:
            return std::nullopt;
    }
}

std::optional<Operand> middlePoint(const SketchEntity& entity) {
    switch (entity.kind) {
        case EntityKind::line:
            return Operand{OperandKind::middle, run(entity.firstValue, 4), {}};
        case EntityKind::arc:
            return Operand{OperandKind::arcMiddle, run(entity.firstValue, 7), {}};
        case EntityKind::xline:
            return pointFrom(entity.firstValue);
        default:
            return std::nullopt;
    }
}

std::optional<Operand> segmentPlace(const SketchData& sketch, const SketchPlace& place) {
    const SketchEntity& entity = entityAt(sketch, place.entity);
    if (entity.kind != EntityKind::polyline || place.index < 0 || place.index >= entity.segmentCount())
        return std::nullopt;
    const CurveRef curve{place.entity, place.index};
    const bool isArc = bulgeOf(entity, place.index) >= 0;
    switch (place.kind) {
        case segmentStart:
            return pointFrom(sketch.vertexValue(place.entity, place.index));
        case segmentEnd:
            return pointFrom(sketch.vertexValue(place.entity, place.index + 1));
        case segmentMid:
            return isArc ? bulgePart(sketch, curve, OperandKind::bulgeMiddle)
                         : segmentPoints(sketch, curve, OperandKind::middle);
        case segmentCentre:
            if (isArc)
                return bulgePart(sketch, curve, OperandKind::bulgeCentre);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Operand> controlPoint(const SketchEntity& entity, int index) {
    if (entity.kind != EntityKind::spline || index < 0 || 2 * index >= entity.valueCount)
        return std::nullopt;
    return pointFrom(entity.firstValue + 2 * index);
}

bool isEndPlace(PlaceKind kind) {
    return kind == end || kind == segmentEnd;
}

double distance(std::span<const double> v, int a, int b) {
    return std::hypot(v[at(b)] - v[at(a)], v[at(b) + 1] - v[at(a) + 1]);
}

double controlExtent(std::span<const double> v, const SketchEntity& entity) {
    double extent = 0.0;
    for (int i = 2; i < entity.valueCount; i += 2)
        extent = std::max(extent, distance(v, entity.firstValue, entity.firstValue + i));
    return extent;
}

const char* kindName(EntityKind kind) {
    constexpr const char* names[] = {"line",           "ray",   "xline", "circle", "arc",     "ellipse",
                                     "elliptical arc", "point", "text",  "spline", "polyline"};
    return names[static_cast<std::size_t>(kind)];
}

}  // namespace

CurveRef curveOf(const SketchPlace& place) {
    const bool ofSegment = place.kind == segment || place.kind == segmentStart || place.kind == segmentEnd ||
                           place.kind == segmentMid || place.kind == segmentCentre;
    return {place.entity, ofSegment ? place.index : -1};
}

std::optional<Operand> pointAt(const SketchData& sketch, const SketchPlace& place) {
    const SketchEntity& entity = entityAt(sketch, place.entity);
    switch (place.kind) {
        case whole:
            if (entity.kind == EntityKind::point || entity.kind == EntityKind::text)
                return pointFrom(entity.firstValue);
            return std::nullopt;
        case start:
            return startPoint(sketch, place.entity);
        case end:
            return endPoint(sketch, place.entity);
        case centre:
            return centrePoint(entity);
        case mid:
            return middlePoint(entity);
        case control:
            return controlPoint(entity, place.index);
        case segment:
            return std::nullopt;
        default:
            return segmentPlace(sketch, place);
    }
}

std::optional<Operand> lineAt(const SketchData& sketch, CurveRef curve) {
    const SketchEntity& entity = entityAt(sketch, curve.entity);
    switch (entity.kind) {
        case EntityKind::line:
            return Operand{OperandKind::segment, run(entity.firstValue, 4), {}};
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::text:
            return Operand{OperandKind::axis, run(entity.firstValue, 3), {}};
        case EntityKind::polyline:
            if (curve.segment >= 0 && curve.segment < entity.segmentCount() && bulgeOf(entity, curve.segment) < 0)
                return segmentPoints(sketch, curve, OperandKind::segment);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Operand> circleAt(const SketchData& sketch, CurveRef curve) {
    const SketchEntity& entity = entityAt(sketch, curve.entity);
    switch (entity.kind) {
        case EntityKind::circle:
        case EntityKind::arc:
            return Operand{OperandKind::circle, run(entity.firstValue, 3), {}};
        case EntityKind::polyline:
            if (curve.segment >= 0 && curve.segment < entity.segmentCount() && bulgeOf(entity, curve.segment) >= 0)
                return bulgePart(sketch, curve, OperandKind::bulgeCircle);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Operand> ellipseAt(const SketchData& sketch, CurveRef curve) {
    const SketchEntity& entity = entityAt(sketch, curve.entity);
    if (entity.kind != EntityKind::ellipse && entity.kind != EntityKind::ellipticalArc)
        return std::nullopt;
    return Operand{OperandKind::ellipse, run(entity.firstValue, 5), {}};
}

std::optional<Operand> curveAt(const SketchData& sketch, const SketchPlace& place) {
    const CurveRef curve = curveOf(place);
    if (auto line = lineAt(sketch, curve))
        return line;
    if (auto circle = circleAt(sketch, curve))
        return circle;
    if (auto ellipse = ellipseAt(sketch, curve))
        return ellipse;
    if (!isSplineCurve(sketch, curve) || (place.kind != start && place.kind != end))
        return std::nullopt;
    const SketchEntity& entity = entityAt(sketch, place.entity);
    const SplineRange range = splineRange(sketch.splines[at(entity.spline)]);
    return splineAtConstant(sketch, place.entity, OperandKind::splineJet,
                            isEndPlace(place.kind) ? range.last : range.first);
}

bool isSplineCurve(const SketchData& sketch, CurveRef curve) {
    return entityAt(sketch, curve.entity).kind == EntityKind::spline;
}

Operand splineAt(const SketchData& sketch, int number, OperandKind kind, int paramValue) {
    const SketchEntity& entity = entityAt(sketch, number);
    Operand operand{kind, {paramValue}, {entity.spline, true, 0.0}};
    const std::vector<int> control = run(entity.firstValue, entity.valueCount);
    operand.inputs.insert(operand.inputs.end(), control.begin(), control.end());
    return operand;
}

Operand splineAtConstant(const SketchData& sketch, int number, OperandKind kind, double param) {
    const SketchEntity& entity = entityAt(sketch, number);
    const SplineBasis basis = splineBasis(sketch.splines[at(entity.spline)], param);
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

std::optional<Operand> startOf(const SketchData& sketch, CurveRef curve) {
    return pointAt(sketch, {curve.entity, curve.segment < 0 ? start : segmentStart, std::max(curve.segment, 0)});
}

std::optional<Operand> endOf(const SketchData& sketch, CurveRef curve) {
    return pointAt(sketch, {curve.entity, curve.segment < 0 ? end : segmentEnd, std::max(curve.segment, 0)});
}

std::string nameOf(const SketchData& sketch, const SketchPlace& place) {
    const SketchEntity& entity = entityAt(sketch, place.entity);
    std::string name = std::string(kindName(entity.kind)) + " " + entity.id;
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

double sizeOf(const SketchData& sketch, CurveRef curve, double unbounded) {
    const SketchEntity& entity = entityAt(sketch, curve.entity);
    const std::span<const double> v = sketch.reference;
    switch (entity.kind) {
        case EntityKind::line:
            return distance(v, entity.firstValue, entity.firstValue + 2);
        case EntityKind::circle:
        case EntityKind::arc:
            return std::abs(v[at(entity.firstValue) + 2]);
        case EntityKind::ellipse:
        case EntityKind::ellipticalArc:
            return std::hypot(v[at(entity.firstValue) + 2], v[at(entity.firstValue) + 3]);
        case EntityKind::text:
            return entity.textHeight;
        case EntityKind::spline:
            return controlExtent(v, entity);
        case EntityKind::polyline:
            return distance(v, sketch.vertexValue(curve.entity, std::max(curve.segment, 0)),
                            sketch.vertexValue(curve.entity, std::max(curve.segment, 0) + 1));
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::point:
            break;
    }
    return unbounded;
}

}  // namespace holdfast::solver::detail
