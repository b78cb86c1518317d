#pragma once

#include <optional>

#include "solver/src/Uses.h"
#include "solver/src/residuals/Equation.h"

namespace holdfast::solver::detail {

/// The curve that a place is on: a whole entity, or one segment of a polyline.
struct CurveRef {
    int entity = -1;
    int segment = -1;

    friend bool operator==(const CurveRef&, const CurveRef&) = default;
    friend auto operator<=>(const CurveRef&, const CurveRef&) = default;
};

CurveRef curveOf(const SketchPlace& place);

// What a place means to equations. Nothing where the entity has no such place.

/// A point: a point or text entity, an end, a middle, a centre, a control point.
std::optional<Operand> pointAt(const SketchData& sketch, const SketchPlace& place);

/// A line, ray, construction line, text direction or straight segment.
std::optional<Operand> lineAt(const SketchData& sketch, CurveRef curve);

/// A circle, arc or arc segment.
std::optional<Operand> circleAt(const SketchData& sketch, CurveRef curve);
std::optional<Operand> ellipseAt(const SketchData& sketch, CurveRef curve);

/// Whatever curve it is, for directions at one of its ends; the end matters to splines only.
std::optional<Operand> curveAt(const SketchData& sketch, const SketchPlace& place);

bool isSplineCurve(const SketchData& sketch, CurveRef curve);

/// A spline read at a parameter that is itself a value.
Operand splineAt(const SketchData& sketch, int entity, OperandKind kind, int paramValue);

/// A spline read at a constant parameter.
Operand splineAtConstant(const SketchData& sketch, int entity, OperandKind kind, double param);

/// True when the operand is two values of the sketch, so that it can be merged with another.
bool isDirect(const Operand& operand);

/// Start and end of an arc, elliptical arc, line, segment or clamped spline as operands.
std::optional<Operand> startOf(const SketchData& sketch, CurveRef curve);
std::optional<Operand> endOf(const SketchData& sketch, CurveRef curve);

/// "line g3", "segment 2 of polyline p1": for messages.
std::string nameOf(const SketchData& sketch, const SketchPlace& place);

/// A length that says how big the curve is: length, radius, extent of the control points; `unbounded` for rays.
double sizeOf(const SketchData& sketch, CurveRef curve, double unbounded);

}  // namespace holdfast::solver::detail
