#pragma once

#include <array>
#include <vector>

#include "document/Document.h"
#include "report/Uses.h"

namespace holdfast::report {

/// One polynomial piece of a spline in Bezier form: degree + 1 control points, the rest unused.
struct CubicPiece {
    int degree = 3;
    std::array<Vec2, 4> control{};
};

/// The pieces of a spline that is a chain of polynomials of degree 1 to 3, which a picture can carry exactly.
/// Any other spline: nothing.
std::vector<CubicPiece> cubicPieces(const SplineShape& spline);

/// Points along any spline, ends included, such that a chord is off by about `tolerance` at most. A spline whose knots
/// or weights do not fit its control points: the control points.
std::vector<Vec2> splinePoints(const SplineShape& spline, double tolerance);

/// The point at a share of the parameter range, 0 the start and 1 the end.
Vec2 splinePointAt(const SplineShape& spline, double share);

}  // namespace holdfast::report
