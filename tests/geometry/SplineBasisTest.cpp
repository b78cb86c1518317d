#include "geometry/SplineBasis.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/SplineCurve.h"

namespace holdfast::geometry {
namespace {

SplineShape rationalCubic() {
    return {3,
            false,
            {{0, 0}, {2, 5}, {6, 4}, {9, -1}, {12, 2}, {15, 0}},
            {0, 0, 0, 0, 1, 2.5, 4, 4, 4, 4},
            {1, 2, 0.5, 1, 3, 1}};
}

SplineShape periodicQuadratic() {
    return {2, true, {{0, 0}, {4, 0}, {5, 3}, {2, 5}, {-1, 3}}, {0, 1, 2, 3.5, 4, 5}, {}};
}

Vec2 derivativeAt(const SplineShape& shape, double t, std::size_t order) {
    const SplineBasis basis = splineBasis(knotsOf(shape), t);
    Vec2 sum;
    for (int i = 0; i < basis.count; ++i) {
        const Vec2 p = shape.control[static_cast<std::size_t>(basis.control(i))];
        sum.x += basis.by[order][static_cast<std::size_t>(i)] * p.x;
        sum.y += basis.by[order][static_cast<std::size_t>(i)] * p.y;
    }
    return sum;
}

/// Basis function i of a degree by the recursion of Cox and de Boor; 0 / 0 counts as 0.
double recursiveBasis(const std::vector<double>& knots, std::size_t i, std::size_t degree, double t) {
    if (degree == 0)
        return knots[i] <= t && (t < knots[i + 1] || (t == knots.back() && t == knots[i + 1])) ? 1.0 : 0.0;
    const double left = knots[i + degree] - knots[i], right = knots[i + degree + 1] - knots[i + 1];
    const double rising = left > 0 ? (t - knots[i]) / left * recursiveBasis(knots, i, degree - 1, t) : 0.0;
    const double falling =
        right > 0 ? (knots[i + degree + 1] - t) / right * recursiveBasis(knots, i + 1, degree - 1, t) : 0.0;
    return rising + falling;
}

Vec2 recursivePoint(const SplineShape& spline, double t) {
    const SplineShape open = unwrapped(spline);
    Vec2 sum;
    double weights = 0.0;
    for (std::size_t i = 0; i < open.control.size(); ++i) {
        const double share = recursiveBasis(open.knots, i, static_cast<std::size_t>(open.degree), t) *
                             (open.weights.empty() ? 1.0 : open.weights[i]);
        sum = sum + share * open.control[i];
        weights += share;
    }
    return (1.0 / weights) * sum;
}

void expectNear(Vec2 a, Vec2 b, double tolerance) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

TEST(SplineBasis, GivesTheSamePointsAsTheRecursion) {
    for (const double t : {0.0, 0.3, 1.0, 2.49, 2.5, 3.9, 4.0})
        expectNear(derivativeAt(rationalCubic(), t, 0), recursivePoint(rationalCubic(), t), 1e-12);
    for (const double t : {0.0, 0.7, 1.0, 3.2, 4.4, 5.0})
        expectNear(derivativeAt(periodicQuadratic(), t, 0), recursivePoint(periodicQuadratic(), t), 1e-12);
}

TEST(SplineBasis, HasDerivativesThatAgreeWithDifferences) {
    constexpr double h = 1e-5;
    for (const double t : {0.4, 1.7, 3.1}) {
        for (const std::size_t order : {0, 1, 2}) {
            const Vec2 before = derivativeAt(rationalCubic(), t - h, order);
            const Vec2 after = derivativeAt(rationalCubic(), t + h, order);
            const Vec2 slope{(after.x - before.x) / (2 * h), (after.y - before.y) / (2 * h)};
            expectNear(derivativeAt(rationalCubic(), t, order + 1), slope, 1e-5);
        }
    }
}

TEST(SplineBasis, RepeatsAPeriodicSplineAndContinuesAClampedOne) {
    expectNear(derivativeAt(periodicQuadratic(), 0.6, 0), derivativeAt(periodicQuadratic(), 5.6, 0), 1e-12);
    expectNear(derivativeAt(periodicQuadratic(), 0.6, 0), derivativeAt(periodicQuadratic(), -4.4, 0), 1e-12);
    const Vec2 inside = derivativeAt(rationalCubic(), 4.0 - 1e-9, 0),
               outside = derivativeAt(rationalCubic(), 4.0 + 1e-9, 0);
    expectNear(inside, outside, 1e-7);
}

TEST(SplineBasis, FindsTheNearestParameterOfAPoint) {
    std::vector<double> coordinates;
    for (const Vec2 p : rationalCubic().control)
        coordinates.insert(coordinates.end(), {p.x, p.y});
    for (const double t : {0.2, 1.1, 2.6, 3.8}) {
        const Vec2 p = derivativeAt(rationalCubic(), t, 0);
        EXPECT_NEAR(nearestSplineParam(knotsOf(rationalCubic()), coordinates, p), t, 1e-7);
    }
}

TEST(SplineBasis, KnowsWhichSplinesStartAtTheirFirstControlPoint) {
    EXPECT_TRUE(isClampedAtStart(knotsOf(rationalCubic())));
    EXPECT_TRUE(isClampedAtEnd(knotsOf(rationalCubic())));
    EXPECT_FALSE(isClampedAtStart(knotsOf(periodicQuadratic())));
}

}  // namespace
}  // namespace holdfast::geometry
