#include "formats/dxf/Flatten.h"
#include "geometry/Angles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

double distanceTo(Vec2 p, Vec2 a, Vec2 b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distanceTo(Vec2 p, const std::vector<Vec2>& chain) {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < chain.size(); ++i)
        nearest = std::min(nearest, distanceTo(p, chain[i - 1], chain[i]));
    return nearest;
}

TEST(FlattenEllipse, StaysWithinTheToleranceAndCloses) {
    const EllipseShape ellipse{{1, 2}, {30, 40}, 0.3};
    for (const double tolerance : {1.0, 0.01, 1e-4}) {
        const std::vector<Vec2> chain = flattened(ellipse, tolerance);
        EXPECT_EQ(chain.front(), chain.back());
        for (int i = 0; i < 1000; ++i) {
            const double t = kTurn * i / 1000, c = std::cos(t), s = 0.3 * std::sin(t);
            EXPECT_LE(distanceTo({1 + 30 * c - 40 * s, 2 + 40 * c + 30 * s}, chain), tolerance * 1.000001);
        }
    }
}

TEST(FlattenEllipse, NeedsTenTimesThePiecesForAHundredthOfTheTolerance) {
    const EllipseShape ellipse{{0, 0}, {10, 0}, 0.5};
    const double coarse = static_cast<double>(flattened(ellipse, 1e-4).size());
    EXPECT_NEAR(static_cast<double>(flattened(ellipse, 1e-6).size()) / coarse, 10.0, 0.1);
}

TEST(FlattenEllipticalArc, RunsFromStartToEnd) {
    const std::vector<Vec2> chain = flattened(EllipticalArcShape{{0, 0}, {2, 0}, 0.5, 0, kQuarterTurn}, 0.01);
    EXPECT_EQ(chain.front(), (Vec2{2, 0}));
    EXPECT_NEAR(chain.back().x, 0, 1e-15);
    EXPECT_NEAR(chain.back().y, 1, 1e-15);
}

TEST(FlattenSpline, StaysWithinTheTolerance) {
    const SplineShape spline{
        3, false, {{0, 0}, {10, 30}, {20, -10}, {40, 20}, {50, 0}}, {0, 0, 0, 0, 1, 2, 2, 2, 2}, {1, 5, 0.5, 1, 1}};
    for (const double tolerance : {1.0, 0.01, 1e-4}) {
        const std::vector<Vec2> chain = flattened(spline, tolerance);
        for (int i = 0; i <= 1000; ++i)
            EXPECT_LE(distanceTo(splinePoint(spline, i / 500.0), chain), tolerance * 1.000001);
    }
}

TEST(FlattenSpline, LeavesStraightPiecesWhole) {
    const SplineShape straight{1, false, {{0, 0}, {5, 0}, {5, 5}}, {0, 0, 1, 2, 2}, {}};
    EXPECT_EQ(flattened(straight, 1e-9), (std::vector<Vec2>{{0, 0}, {5, 0}, {5, 5}}));
}

TEST(Flatten, EndsWithSoManyPiecesHoweverSmallTheTolerance) {
    const SplineShape spline{2, false, {{0, 0}, {1, 1}, {2, 0}}, {0, 0, 0, 1, 1, 1}, {}};
    EXPECT_EQ(flattened(spline, 1e-300).size(), 65537U);
    EXPECT_EQ(flattened(EllipseShape{{0, 0}, {1, 0}, 1}, 1e-300).size(), 65537U);
}

}  // namespace
}  // namespace holdfast::formats
