#include "report/picture/Outline.h"

#include <gtest/gtest.h>

#include "geometry/SplineCurve.h"
#include "report/picture/SplinePieces.h"
#include "tests/report/Samples.h"

namespace holdfast::report {

namespace {

const Box kWindow{{-10, -10}, {10, 10}};

double farthestFrom(const std::vector<Vec2>& points, Vec2 centre, double radius) {
    double worst = 0.0;
    for (const Vec2& point : points)
        worst = std::max(worst, std::fabs(geometry::distance(point, centre) - radius));
    return worst;
}

TEST(OutlineOfUnboundedLine, EndsAtTheWindow) {
    const Outline outline = outlineOf(XlineShape{{0, 5}, {2, 0}}, kWindow, 0.1);
    ASSERT_EQ(outline.strokes.size(), 2u);
    EXPECT_EQ(outline.strokes[0].to, (Vec2{-10, 5}));
    EXPECT_EQ(outline.strokes[1].to, (Vec2{10, 5}));
}

TEST(OutlineOfUnboundedLine, IsEmptyWhereItMissesTheWindow) {
    EXPECT_TRUE(outlineOf(XlineShape{{0, 11}, {1, 0}}, kWindow, 0.1).strokes.empty());
    EXPECT_TRUE(outlineOf(RayShape{{20, 0}, {1, 0}}, kWindow, 0.1).strokes.empty());
    EXPECT_TRUE(outlineOf(XlineShape{{0, 0}, {0, 0}}, kWindow, 0.1).strokes.empty());
}

TEST(OutlineOfRay, StartsAtItsBasePoint) {
    const Outline outline = outlineOf(RayShape{{3, 3}, {1, 1}}, kWindow, 0.1);
    ASSERT_EQ(outline.strokes.size(), 2u);
    EXPECT_EQ(outline.strokes[0].to, (Vec2{3, 3}));
    EXPECT_EQ(outline.strokes[1].to, (Vec2{10, 10}));
}

TEST(OutlineOfCubicSpline, KeepsItsControlPoints) {
    const SplineShape spline{3, false, {{0, 0}, {1, 2}, {3, 2}, {4, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    const Outline outline = outlineOf(spline, kWindow, 0.1);
    ASSERT_EQ(outline.strokes.size(), 2u);
    EXPECT_EQ(outline.strokes[1].kind, Stroke::Kind::cubic);
    EXPECT_EQ(outline.strokes[1].control1, (Vec2{1, 2}));
    EXPECT_EQ(outline.strokes[1].control2, (Vec2{3, 2}));
    EXPECT_EQ(outline.strokes[1].to, (Vec2{4, 0}));
}

TEST(OutlineOfPeriodicSpline, ReturnsToItsStartThroughOnePieceForEachSpan) {
    const SplineShape spline{3, true, {{1, 0}, {0, 1}, {-1, 0}, {0, -1}}, {0, 1, 2, 3, 4}, {}};
    const Outline outline = outlineOf(spline, kWindow, 0.1);
    ASSERT_EQ(outline.strokes.size(), 5u);
    EXPECT_TRUE(outline.closed);
    EXPECT_NEAR(geometry::distance(outline.strokes.front().to, outline.strokes.back().to), 0.0, 1e-12);
    EXPECT_NEAR(geometry::distance(outline.strokes[0].to, splinePoint(spline, 0.0)), 0.0, 1e-12);
    EXPECT_NEAR(geometry::distance(outline.strokes[2].to, splinePoint(spline, 2.0)), 0.0, 1e-12);
}

TEST(OutlineOfRationalSpline, FollowsACircleWithinTheTolerance) {
    const double half = std::sqrt(0.5);
    const SplineShape quarter{2, false, {{1, 0}, {1, 1}, {0, 1}}, {0, 0, 0, 1, 1, 1}, {1, half, 1}};
    const auto runs = flattened(outlineOf(quarter, kWindow, 1e-4), 1e-4);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_GT(runs[0].size(), 16u);
    EXPECT_LT(farthestFrom(runs[0], {0, 0}, 1.0), 1e-12);
    EXPECT_EQ(runs[0].back(), (Vec2{0, 1}));
}

TEST(OutlineOfSplineWithoutFittingKnots, JoinsItsControlPoints) {
    const SplineShape faulty{3, false, {{0, 0}, {1, 1}, {2, 0}}, {0, 1}, {}};
    const Outline outline = outlineOf(faulty, kWindow, 0.1);
    ASSERT_EQ(outline.strokes.size(), 3u);
    EXPECT_EQ(outline.strokes[1].to, (Vec2{1, 1}));
}

TEST(OutlineOfPolyline, TurnsANegativeBulgeClockwise) {
    const PolylineShape halfTurn{{{0, 0}, {2, 0}}, {-1, 0}, {0, 0}, false};
    const auto runs = flattened(outlineOf(halfTurn, kWindow, 0.01), 0.01);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_LT(farthestFrom(runs[0], {1, 0}, 1.0), 1e-12);
    EXPECT_NEAR(boundsOf(halfTurn).high.y, 1.0, 1e-12);  // clockwise from left to right: over the top
    EXPECT_NEAR(boundsOf(halfTurn).low.y, 0.0, 1e-12);
}

TEST(SegmentOfPolyline, IsALineOrACounterClockwiseArc) {
    const PolylineShape polyline{{{0, 0}, {2, 0}, {2, 2}}, {-1, 0, 0}, {0, 0, 0}, true};
    const auto arc = std::get<ArcShape>(segmentShape(polyline, 0));
    EXPECT_NEAR(arc.endAngle - arc.startAngle, kPi, 1e-12);
    EXPECT_EQ(std::get<LineShape>(segmentShape(polyline, 2)), (LineShape{{2, 2}, {0, 0}}));
    EXPECT_TRUE(std::holds_alternative<PointShape>(segmentShape(polyline, 3)));
}

TEST(BoundsOfArc, ReachOverItsTurningPointsOnly) {
    const Box box = boundsOf(ArcShape{{0, 0}, 2, 0.25 * kPi, 0.75 * kPi});
    EXPECT_NEAR(box.high.y, 2.0, 1e-12);
    EXPECT_NEAR(box.low.y, std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(box.low.x, -std::sqrt(2.0), 1e-12);
}

TEST(BoundsOfEllipse, FollowItsTurnedAxes) {
    const Box box = boundsOf(EllipseShape{{1, 1}, {0, 4}, 0.5});
    EXPECT_NEAR(box.width(), 4.0, 1e-12);
    EXPECT_NEAR(box.height(), 8.0, 1e-12);
}

}  // namespace
}  // namespace holdfast::report
