#pragma once

#include <array>
#include <span>
#include <vector>

#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// What of a spline does not move with its control points; those of a periodic one wrap round.
struct SplineKnots {
    int degree = 3;
    bool periodic = false;
    int controlCount = 0;
    std::vector<double> knots;    ///< of a periodic one too as an open spline has them: controls + degree + 1
    std::vector<double> weights;  ///< empty: polynomial
};

/// The basis functions of a spline that do not vanish at one parameter, with three derivatives.
///
/// by[k][i] is the k-th derivative of the basis function of control point control(i).
struct SplineBasis {
    static constexpr int kMaxDegree = 25;  ///< the highest that the geometry library takes
    static constexpr int kDerivatives = 3;

    int count = 0;         ///< degree + 1
    int firstControl = 0;  ///< before wrapping
    int controlCount = 0;
    std::array<std::array<double, kMaxDegree + 1>, kDerivatives + 1> by{};

    int control(int i) const { return (firstControl + i) % controlCount; }
};

/// The curve's point at a parameter by its basis there.
Vec2 pointOf(const SplineBasis& basis, std::span<const Vec2> control);

/// Basis of a spline at a parameter. Outside the curve's range the end piece is continued; a periodic spline repeats.
/// Cost: degree squared.
SplineBasis splineBasis(const SplineKnots& spline, double param);

/// The parameters between which the curve runs.
struct SplineRange {
    double first = 0.0, last = 1.0;
};
SplineRange splineRange(const SplineKnots& spline);

/// True when the first (last) control point is the curve's start (end).
bool isClampedAtStart(const SplineKnots& spline);
bool isClampedAtEnd(const SplineKnots& spline);

/// The parameter of the point of the curve nearest to p, found from samples and then refined.
double nearestSplineParam(const SplineKnots& spline, std::span<const double> control, Vec2 p);

}  // namespace holdfast::geometry
