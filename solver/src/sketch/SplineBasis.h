#pragma once

#include <array>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// The basis functions of a spline that do not vanish at one parameter, with three derivatives.
///
/// by[k][i] is the k-th derivative of the basis function of control point control(i).
struct SplineBasis {
    static constexpr int kMaxDegree = 25;
    static constexpr int kDerivatives = 3;

    int count = 0;         ///< degree + 1
    int firstControl = 0;  ///< before wrapping
    int controlCount = 0;
    std::array<std::array<double, kMaxDegree + 1>, kDerivatives + 1> by{};

    int control(int i) const { return (firstControl + i) % controlCount; }
};

/// Basis of a spline at a parameter. Outside the curve's range the end piece is continued; a periodic spline repeats.
/// Cost: degree squared.
SplineBasis splineBasis(const SplineConstants& spline, double param);

/// The parameters between which the curve runs.
struct SplineRange {
    double first = 0.0, last = 1.0;
};
SplineRange splineRange(const SplineConstants& spline);

/// True when the first (last) control point is the curve's start (end).
bool isClampedAtStart(const SplineConstants& spline);
bool isClampedAtEnd(const SplineConstants& spline);

/// The parameter of the point of the curve nearest to p, found from samples and then refined.
double nearestSplineParam(const SplineConstants& spline, std::span<const double> control, Vec2 p);

}  // namespace holdfast::solver::detail
