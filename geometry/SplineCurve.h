#pragma once

#include <vector>

#include "geometry/Shapes.h"
#include "geometry/SplineBasis.h"

namespace holdfast::geometry {

/// A control point in homogeneous coordinates: (x w, y w, w).
struct WeightedPoint {
    double x = 0.0, y = 0.0, w = 1.0;
};

/// The same curve without periodicity: control points and knots of one period written out on both sides, so that
/// control.size() + degree + 1 knots hold again. A spline that is not periodic is returned as it is.
///
/// With m the multiplicity of the first knot, degree + 1 - m knots are copied to either side, and as many control
/// points wrap from the front to the back; control point 0 belongs to the basis function that starts at the first of
/// the copied knots.
SplineShape unwrapped(const SplineShape& spline);

SplineKnots knotsOf(const SplineShape& spline);

/// The curve's point at a parameter, which is clamped to the curve's own range.
Vec2 splinePoint(const SplineShape& spline, double param);
Vec2 splineStart(const SplineShape& spline);
Vec2 splineEnd(const SplineShape& spline);

/// The curve as Bezier pieces of its degree, in order, degree + 1 points each; knot intervals of no length have none.
/// Point j of the piece over [a, b] is the blossom at a (degree - j times) and b (j times) (L. Ramshaw, Blossoming: a
/// connect-the-dots approach to splines).
std::vector<std::vector<WeightedPoint>> bezierPieces(const SplineShape& spline);

}  // namespace holdfast::geometry
