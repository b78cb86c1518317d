#pragma once

#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// True for shapes with a parameter: all but points and texts.
bool isCurve(const Shape& shape);

/// The kind of a shape in a user's words: "line", "elliptical arc", ...
const char* kindName(const Shape& shape);

/// GeometryError unless the shape is a curve with which one can reckon: finite numbers, a length, a positive radius,
/// increasing knots as many as degree and control points ask for, positive weights.
void requireSound(const Shape& shape);

/// GeometryError unless the parameter or distance along a curve is finite.
void requireFinite(double alongCurve);

}  // namespace holdfast::geometry
