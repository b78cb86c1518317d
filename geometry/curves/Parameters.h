#pragma once

#include <optional>
#include <span>
#include <vector>

#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

// The parameter of a curve, by kind of shape:
//   line, ray, xline           the distance from the start or base point, negative before it
//   arc, circle                the angle from the x axis, increasing with the arc
//   ellipse, elliptical arc    the eccentric angle from the major axis
//   spline                     the knot parameter
//   polyline                   segment index + fraction of the segment's length (arc segments: of its angle), from 0 up
//                              to the number of segments; below and above where the ends are prolonged
// All functions throw GeometryError for points, texts, unsound shapes and parameters that are not finite.

/// The least and the greatest parameter; infinite where a ray or xline has no end.
struct ParamRange {
    double first = 0.0;
    double last = 0.0;
};
ParamRange paramRange(const Shape& shape);

/// What the parameter grows by in one round of a circle, ellipse, periodic spline or closed polyline; 0 for others.
double periodOf(const Shape& shape);

/// True for what has no ends by its kind, and for open kinds whose ends lie on each other.
bool isClosed(const Shape& shape);

/// A parameter of a curve with a period brought into first ... first + period; others stay.
double normalised(const Shape& shape, double param);

/// The point at a parameter. Beyond the ends: on the carrier; a spline stops at its end.
Vec2 pointAt(const Shape& shape, double param);
std::vector<Vec2> pointsAt(const Shape& shape, std::span<const double> params);

/// The direction of travel, length 1. GeometryError where there is none (a cusp).
Vec2 tangentAt(const Shape& shape, double param);

/// 1 / radius of the circle that fits best; positive where the curve turns counter-clockwise.
double curvatureAt(const Shape& shape, double param);

/// First and last point; none where the curve has no such end. A closed curve starts and ends at its seam.
std::optional<Vec2> startPoint(const Shape& shape);
std::optional<Vec2> endPoint(const Shape& shape);

/// A box around the curve: tight, but for splines that of the control points; infinite for rays and xlines.
Box boundsOf(const Shape& shape);

}  // namespace holdfast::geometry
