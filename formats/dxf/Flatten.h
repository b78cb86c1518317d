#pragma once

#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// Points on a curve, from its start to its end, whose straight connections stay within a tolerance of the curve and
/// the curve within the tolerance of them. A full ellipse ends in its first point. tolerance is above 0; however
/// small it is, an ellipse and every knot interval of a spline are cut into 65536 pieces at most.
///
/// Ellipses: equal steps h of the parameter with h^2 / 8 * semi-major axis <= tolerance, the error bound of linear
/// interpolation (the second derivative is nowhere longer than the semi-major axis).
std::vector<Vec2> flattened(const EllipseShape& ellipse, double tolerance);
std::vector<Vec2> flattened(const EllipticalArcShape& arc, double tolerance);

/// Splines: their Bezier pieces are halved until all control points of a piece lie within the tolerance of its chord;
/// the piece lies in their convex hull, because weights are positive.
std::vector<Vec2> flattened(const SplineShape& spline, double tolerance);

}  // namespace holdfast::formats
