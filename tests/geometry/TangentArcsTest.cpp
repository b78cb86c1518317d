#include "geometry/construction/TangentArcs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "geometry/GeometryError.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

bool hasCentre(const std::vector<TangentCircle>& circles, Vec2 centre, double tolerance) {
    return std::any_of(circles.begin(), circles.end(),
                       [&](const TangentCircle& circle) { return distance(circle.centre, centre) <= tolerance; });
}

TEST(TangentCircles, OfTwoLinesLieInAllFourCorners) {
    const std::vector<TangentCircle> found = tangentCircles(line(0, 0, 10, 0), line(0, 0, 0, 10), 2);
    ASSERT_EQ(found.size(), 4U);
    EXPECT_THAT(found[3].centre, IsAt(Vec2{2, 2}));
    EXPECT_THAT(found[3].pointA, IsAt(Vec2{2, 0}));
    EXPECT_THAT(found[3].pointB, IsAt(Vec2{0, 2}));
    EXPECT_DOUBLE_EQ(found[3].paramA, 2.0);
    EXPECT_DOUBLE_EQ(found[0].paramA, -2.0);
}

TEST(TangentCircles, OfParallelLinesExistForNoOtherRadiusThanHalfTheirDistance) {
    EXPECT_TRUE(tangentCircles(line(0, 0, 10, 0), line(0, 5, 10, 5), 2).empty());
}

TEST(TangentCircles, OfALineAndACircle) {
    const std::vector<TangentCircle> found = tangentCircles(line(-9, 0, 9, 0), CircleShape{{0, 5}, 2}, 4);
    EXPECT_EQ(found.size(), 4U);
    EXPECT_TRUE(hasCentre(found, {std::sqrt(35.0), 4}, 1e-9));
    EXPECT_TRUE(hasCentre(found, {-std::sqrt(3.0), 4}, 1e-9));
}

TEST(TangentCircles, TakeArcsAsCirclesAndRaysAsLines) {
    const ArcShape arc{{0, 5}, 2, 1, 1.5};
    const std::vector<TangentCircle> found = tangentCircles(RayShape{{9, 0}, {1, 0}}, arc, 4);
    EXPECT_EQ(found.size(), 4U);
    for (const TangentCircle& circle : found) {
        EXPECT_GE(circle.paramB, 1.0);
        EXPECT_LT(circle.paramB, 1.0 + 2 * kPi);
        EXPECT_THAT(pointAt(arc, circle.paramB), IsAt(circle.pointB));
    }
}

TEST(TangentCircles, OfAnEllipseAreFoundWhereItsAxesEnd) {
    const std::vector<TangentCircle> found = tangentCircles(EllipseShape{{0, 0}, {5, 0}, 0.6}, line(7, -9, 7, 9), 1);
    EXPECT_TRUE(hasCentre(found, {6, 0}, 1e-7));
}

TEST(TangentCircles, AreFoundForCirclesSmallerThanTheRadius) {
    const EllipseShape ellipse{{8, 0}, {5, 0}, 0.6};
    EXPECT_GE(tangentCircles(CircleShape{{0, 0}, 1}, ellipse, 3).size(), 2U);
    EXPECT_GE(tangentCircles(CircleShape{{0, 0}, 3}, ellipse, 3).size(), 2U);
}

TEST(TangentCircles, KeepToASplineBetweenItsEnds) {
    const SplineShape hill = bezier({{0, 0}, {5, 10}, {10, 0}});
    EXPECT_TRUE(hasCentre(tangentCircles(hill, line(0, 7, 9, 7), 1), {5, 6}, 1e-7));
    EXPECT_TRUE(tangentCircles(hill, line(0, -30, 9, -30), 2).empty());
}

TEST(TangentCircles, RefuseOtherThanPositiveRadiiAndPolylines) {
    for (const double radius : {0.0, -1.0, std::nan("")}) {
        EXPECT_THROW(tangentCircles(line(0, 0, 1, 0), line(0, 0, 0, 1), radius), GeometryError);
    }
    EXPECT_THROW(tangentCircles(square(1), line(0, 0, 0, 1), 1), GeometryError);
    EXPECT_THROW(tangentCircles(PointShape{}, line(0, 0, 0, 1), 1), GeometryError);
}

TEST(TangentCircles, HoldInSmallAndLargeDrawings) {
    for (const double scale : {1e-3, 1e5}) {
        const EllipseShape ellipse{{0, 0}, {5 * scale, 0}, 0.6};
        const LineShape beside{{7 * scale, -9 * scale}, {7 * scale, 9 * scale}};
        EXPECT_TRUE(hasCentre(tangentCircles(ellipse, beside, scale), {6 * scale, 0}, 1e-7 * scale));
    }
}

/// A curve's parallel at a distance, as chords: where two parallels cross, a tangent circle has its centre.
Chords parallelChords(const Shape& shape, double offset) {
    const Chords chords = chordsOf(shape, 700);
    Chords parallel{{}, chords.params};
    for (std::size_t i = 0; i < chords.points.size(); ++i) {
        const Vec2 before = chords.points[i == 0 ? 0 : i - 1];
        const Vec2 behind = chords.points[std::min(i + 1, chords.points.size() - 1)];
        parallel.points.push_back(chords.points[i] + offset * leftOf(unit(behind - before)));
    }
    return parallel;
}

constexpr CurveKind kRoundedKinds[] = {CurveKind::line,    CurveKind::xline,  CurveKind::circle,
                                       CurveKind::ellipse, CurveKind::spline, CurveKind::rationalSpline};

class TangentPairs : public testing::TestWithParam<CurveKind> {};

/// Chords of a sharp bend are too rough to show what its parallel does.
bool isGentle(const Shape& shape, double param) {
    return std::abs(curvatureAt(shape, param)) < 5.0;
}

/// Centres of tangent circles that any correct search has to find.
std::vector<Vec2> visibleCentres(const Shape& a, const Shape& b, double radius) {
    std::vector<Vec2> centres;
    for (const double sideA : {-radius, radius}) {
        for (const double sideB : {-radius, radius}) {
            for (const ChordCrossing& at : chordCrossings(parallelChords(a, sideA), parallelChords(b, sideB))) {
                if (isGentle(a, at.paramA) && isGentle(b, at.paramB)) {
                    centres.push_back(at.point);
                }
            }
        }
    }
    return centres;
}

TEST_P(TangentPairs, MissNoCircleWhereParallelsCross) {
    std::ptrdiff_t seen = 0;
    std::ptrdiff_t missed = 0;
    for (const CurveKind other : kRoundedKinds) {
        RandomCurves random(700 + static_cast<std::uint64_t>(GetParam()) * 20 + static_cast<std::uint64_t>(other));
        for (int i = 0; i < 2; ++i) {
            const Shape a = random.make(GetParam());
            const Shape b = random.make(other);
            const double radius = random.number(0.2, 3.0);
            const std::vector<TangentCircle> found = tangentCircles(a, b, radius);
            const std::vector<Vec2> centres = visibleCentres(a, b, radius);
            seen += std::ssize(centres);
            missed += std::count_if(centres.begin(), centres.end(),
                                    [&](Vec2 centre) { return !hasCentre(found, centre, 0.05); });
        }
    }
    EXPECT_GT(seen, 20);
    EXPECT_EQ(missed, 0) << "of " << seen;
}

TEST_P(TangentPairs, TouchBothCurves) {
    for (const CurveKind other : kRoundedKinds) {
        RandomCurves random(800 + static_cast<std::uint64_t>(GetParam()) * 20 + static_cast<std::uint64_t>(other));
        for (int i = 0; i < 2; ++i) {
            const Shape a = random.make(GetParam());
            const Shape b = random.make(other);
            for (const TangentCircle& circle : tangentCircles(a, b, 1.3)) {
                ASSERT_NEAR(distance(circle.centre, circle.pointA), 1.3, 1e-8);
                ASSERT_NEAR(distance(circle.centre, circle.pointB), 1.3, 1e-8);
                ASSERT_NEAR(dot(tangentAt(a, circle.paramA), circle.pointA - circle.centre), 0.0, 1e-7);
                ASSERT_NEAR(dot(tangentAt(b, circle.paramB), circle.pointB - circle.centre), 0.0, 1e-7);
                ASSERT_THAT(pointAt(a, circle.paramA), IsNear(circle.pointA, 1e-8));
                ASSERT_THAT(pointAt(b, circle.paramB), IsNear(circle.pointB, 1e-8));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(RoundedKinds, TangentPairs, testing::ValuesIn(kRoundedKinds));

TEST(FilletArc, IsTheShorterArcBetweenTheTangentPoints) {
    const TangentCircle corner{{2, 2}, 2, {2, 0}, {0, 2}, 2, 2};
    const ArcShape arc = filletArc(corner);
    EXPECT_NEAR(lengthOf(arc), kPi, 1e-12);
    EXPECT_THAT(*startPoint(arc), IsAt(Vec2{0, 2}));
    EXPECT_THAT(*endPoint(arc), IsAt(Vec2{2, 0}));
    const ArcShape turned = filletArc({{2, 2}, 2, {0, 2}, {2, 0}, 2, 2});
    EXPECT_EQ(turned, arc);
}

}  // namespace
}  // namespace holdfast::geometry
