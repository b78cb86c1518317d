#include "geometry/SplineCurve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

void expectNear(Vec2 point, Vec2 expected) {
    EXPECT_NEAR(point.x, expected.x, 1e-12);
    EXPECT_NEAR(point.y, expected.y, 1e-12);
}

/// A point of a Bezier piece by its definition with binomials.
Vec2 bezierPoint(const std::vector<WeightedPoint>& piece, double t) {
    WeightedPoint sum{0, 0, 0};
    double binomial = 1;
    const std::size_t degree = piece.size() - 1;
    for (std::size_t i = 0; i <= degree; ++i) {
        const double b =
            binomial * std::pow(t, static_cast<double>(i)) * std::pow(1 - t, static_cast<double>(degree - i));
        sum = {sum.x + b * piece[i].x, sum.y + b * piece[i].y, sum.w + b * piece[i].w};
        binomial = binomial * static_cast<double>(degree - i) / static_cast<double>(i + 1);
    }
    return {sum.x / sum.w, sum.y / sum.w};
}

const SplineShape kCubic{
    3, false, {{0, 0}, {1, 3}, {2, -1}, {4, 2}, {5, 0}, {6, 6}}, {0, 0, 0, 0, 1, 1.5, 3, 3, 3, 3}, {}};
const double kHalfSqrt = std::sqrt(0.5);
const SplineShape kQuarterCircle{2, false, {{1, 0}, {1, 1}, {0, 1}}, {0, 0, 0, 1, 1, 1}, {1, kHalfSqrt, 1}};
/// Uniform periodic quadratic: its joints are the middles of the control polygon's sides.
const SplineShape kRing{2, true, {{0, 0}, {2, 0}, {2, 2}, {0, 2}}, {0, 1, 2, 3, 4}, {}};

TEST(SplineCurve, BeginsAndEndsInItsOuterControlPointsWhenClamped) {
    expectNear(splineStart(kCubic), {0, 0});
    expectNear(splineEnd(kCubic), {6, 6});
    expectNear(splinePoint(kCubic, -7), {0, 0});
    expectNear(splinePoint(kCubic, 99), {6, 6});
}

TEST(SplineCurve, OfRationalDegreeTwoIsACircle) {
    for (const double t : {0.0, 0.2, 0.5, 0.9, 1.0}) {
        const Vec2 point = splinePoint(kQuarterCircle, t);
        EXPECT_NEAR(std::hypot(point.x, point.y), 1.0, 1e-14);
    }
    expectNear(splinePoint(kQuarterCircle, 0.5), {kHalfSqrt, kHalfSqrt});
}

TEST(SplineCurve, WithoutClampedKnotsStartsInsideItsPolygon) {
    const SplineShape loose{2, false, {{0, 0}, {2, 0}, {2, 2}}, {0, 1, 2, 3, 4, 5}, {}};
    expectNear(splineStart(loose), {1, 0});
    expectNear(splineEnd(loose), {2, 1});
}

TEST(PeriodicSpline, UnwrapsIntoOneTurnWithTheSameEnds) {
    const SplineShape open = unwrapped(kRing);
    EXPECT_FALSE(open.periodic);
    EXPECT_EQ(open.knots.size(), open.control.size() + 3);
    EXPECT_THAT(open.knots, testing::ElementsAre(-2, -1, 0, 1, 2, 3, 4, 5, 6));
    EXPECT_EQ(open.control.size(), 6U);
    EXPECT_EQ(open.control[4], open.control[0]);
    expectNear(splineStart(open), splineEnd(open));
    expectNear(splineStart(open), {1, 0});
    expectNear(splinePoint(kRing, 1), {2, 1});
}

TEST(PeriodicSpline, WithDoubleEndKnotsUnwrapsToo) {
    const SplineShape ring{2, true, {{0, 0}, {2, 0}, {2, 2}}, {0, 0, 1, 2, 2}, {1, 2, 3}};
    const SplineShape open = unwrapped(ring);
    EXPECT_THAT(open.knots, testing::ElementsAre(-1, 0, 0, 1, 2, 2, 3));
    EXPECT_THAT(open.weights, testing::ElementsAre(1, 2, 3, 1));
    expectNear(splineStart(open), {0, 0});
    expectNear(splineEnd(open), {0, 0});
}

TEST(PeriodicSpline, OfFewerKnotsThanItsDegreeGoesRoundMoreThanOnce) {
    const SplineShape ring{3, true, {{0, 0}, {2, 0}, {2, 2}}, {0, 1, 2, 3}, {}};
    const SplineShape open = unwrapped(ring);
    EXPECT_THAT(open.knots, testing::ElementsAre(-3, -2, -1, 0, 1, 2, 3, 4, 5, 6));
    expectNear(splineStart(open), splineEnd(open));
}

TEST(BezierPieces, TraceTheCurveTheyAreCutFrom) {
    for (const SplineShape& spline : {kCubic, kQuarterCircle, kRing}) {
        const auto pieces = bezierPieces(spline);
        std::size_t next = 0;
        for (std::size_t i = 1; i < spline.knots.size(); ++i) {
            const double a = spline.knots[i - 1], b = spline.knots[i];
            if (a == b)
                continue;
            ASSERT_LT(next, pieces.size());
            for (const double t : {0.0, 0.3, 0.5, 1.0})
                expectNear(bezierPoint(pieces[next], t), splinePoint(spline, a + t * (b - a)));
            ++next;
        }
        EXPECT_EQ(next, pieces.size());
    }
}

}  // namespace
}  // namespace holdfast::geometry
