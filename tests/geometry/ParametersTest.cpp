#include "geometry/curves/Parameters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geometry/GeometryError.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(LineParameter, IsTheDistanceFromTheStartAndGoesOnBeyondTheEnds) {
    const LineShape shape = line(1, 2, 4, 6);
    EXPECT_EQ(paramRange(shape).last, 5.0);
    EXPECT_THAT(pointAt(shape, 2.5), IsAt(Vec2{2.5, 4}));
    EXPECT_THAT(pointAt(shape, -5.0), IsAt(Vec2{-2, -2}));
}

TEST(RayParameter, IsADistanceWhateverTheLengthOfTheDirection) {
    const RayShape ray{{1, 1}, {0, 7}};
    EXPECT_THAT(pointAt(ray, 3.0), IsAt(Vec2{1, 4}));
    EXPECT_EQ(paramRange(ray).first, 0.0);
    EXPECT_EQ(paramRange(ray).last, std::numeric_limits<double>::infinity());
}

TEST(XlineParameter, IsUnboundedOnBothSides) {
    const XlineShape xline{{1, 1}, {-3, 0}};
    EXPECT_THAT(pointAt(xline, 3.0), IsAt(Vec2{-2, 1}));
    EXPECT_EQ(paramRange(xline).first, -std::numeric_limits<double>::infinity());
}

TEST(ArcParameter, IsTheAngle) {
    const ArcShape arc{{1, 1}, 2.0, kPi / 2, 2.25 * kPi};
    EXPECT_THAT(pointAt(arc, kPi), IsAt(Vec2{-1, 1}));
    EXPECT_THAT(pointAt(arc, 2 * kPi), IsAt(Vec2{3, 1}));
}

TEST(EllipseParameter, IsTheEccentricAngleFromTheMajorAxis) {
    const EllipseShape ellipse{{0, 0}, {0, 4}, 0.5};
    EXPECT_THAT(pointAt(ellipse, 0.0), IsAt(Vec2{0, 4}));
    EXPECT_THAT(pointAt(ellipse, kPi / 2), IsAt(Vec2{-2, 0}));
    EXPECT_THAT(pointAt(ellipse, kPi / 4), IsAt(Vec2{-std::sqrt(2.0), 2 * std::sqrt(2.0)}));
}

TEST(SplineParameter, IsTheKnotParameter) {
    EXPECT_THAT(pointAt(bezier({{0, 0}, {5, 10}, {10, 0}}), 0.5), IsAt(Vec2{5, 5}));
    EXPECT_THAT(pointAt(circleAsSpline(), 1.5), IsAt(Vec2{-std::sqrt(0.5), std::sqrt(0.5)}));
}

TEST(SplineParameter, StopsAtTheEnds) {
    EXPECT_THAT(pointAt(bezier({{0, 0}, {5, 10}, {10, 0}}), 7.0), IsAt(Vec2{10, 0}));
}

TEST(SplineParameter, OfUnclampedKnotsRunsOverTheInnerOnes) {
    SplineShape spline;
    spline.degree = 2;
    spline.control = {{0, 0}, {2, 2}, {4, 0}, {6, 2}};
    spline.knots = {0, 1, 2, 3, 4, 5, 6};
    EXPECT_EQ(paramRange(spline).first, 2.0);
    EXPECT_EQ(paramRange(spline).last, 4.0);
    EXPECT_THAT(startPoint(spline), Optional(IsAt(Vec2{1, 1})));
}

TEST(PolylineParameter, IsSegmentAndFraction) {
    const PolylineShape shape = polyline({{0, 0}, {10, 0}, {10, 10}}, {0, 1});
    EXPECT_EQ(paramRange(shape).last, 2.0);
    EXPECT_THAT(pointAt(shape, 0.25), IsAt(Vec2{2.5, 0}));
    EXPECT_THAT(pointAt(shape, 1.5), IsAt(Vec2{15, 5}));
}

TEST(PolylineParameter, GoesOnAlongTheOutermostSegments) {
    const PolylineShape shape = polyline({{0, 0}, {10, 0}, {10, 10}}, {0, 1});
    EXPECT_THAT(pointAt(shape, -0.5), IsAt(Vec2{-5, 0}));
    EXPECT_THAT(pointAt(shape, 2.5), IsAt(Vec2{5, 5}));
}

TEST(PolylineParameter, AtAVertexGivesTheVertexToTheLastBit) {
    const PolylineShape shape = polyline({{0.1, 0.2}, {0.3, 1.0 / 3.0}, {1e5 / 7.0, 0.7}}, {0.3, -0.6});
    EXPECT_EQ(pointAt(shape, 1.0), shape.vertices[1]);
    EXPECT_EQ(pointAt(shape, 2.0), shape.vertices[2]);
}

TEST(PolylineParameter, InASegmentWithoutLengthGivesItsVertex) {
    EXPECT_EQ(pointAt(polyline({{0, 0}, {5, 0}, {5, 0}, {9, 0}}), 1.5), (Vec2{5, 0}));
}

TEST(ClosedCurveParameter, ReturnsAfterOneRound) {
    EXPECT_THAT(pointAt(square(10), 4.5), IsAt(Vec2{5, 0}));
    EXPECT_DOUBLE_EQ(normalised(square(10), -0.5), 3.5);
    EXPECT_DOUBLE_EQ(normalised(CircleShape{{0, 0}, 1}, 2 * kPi), 0.0);
    EXPECT_DOUBLE_EQ(normalised(line(0, 0, 1, 0), -3.0), -3.0);
}

TEST(Tangent, PointsAlongTheDirectionOfTravel) {
    EXPECT_THAT(tangentAt(ArcShape{{0, 0}, 5, 0, 1}, 0.0), IsAt(Vec2{0, 1}));
    EXPECT_THAT(tangentAt(polyline({{0, 0}, {10, 0}}, {-1}), 0.0), IsAt(Vec2{0, 1}));
    EXPECT_THAT(tangentAt(bezier({{0, 0}, {5, 10}, {10, 0}}), 0.5), IsAt(Vec2{1, 0}));
}

TEST(Tangent, DoesNotExistInACusp) {
    const SplineShape cusp = bezier({{0, 0}, {4, 4}, {-2, 4}, {2, 0}});
    EXPECT_THROW(tangentAt(bezier({{0, 0}, {0, 0}, {1, 1}}), 0.0), GeometryError);
    EXPECT_NO_THROW(tangentAt(cusp, 0.25));
}

TEST(Curvature, IsPositiveWhereTheCurveTurnsLeft) {
    EXPECT_DOUBLE_EQ(curvatureAt(CircleShape{{3, 4}, 4.0}, 1.0), 0.25);
    EXPECT_DOUBLE_EQ(curvatureAt(line(0, 0, 3, 4), 1.0), 0.0);
    EXPECT_NEAR(curvatureAt(polyline({{0, 0}, {10, 0}}, {-1}), 0.5), -0.2, 1e-12);
    EXPECT_NEAR(curvatureAt(EllipseShape{{0, 0}, {4, 0}, 0.5}, 0.0), 4.0 / 4.0, 1e-12);
    EXPECT_NEAR(curvatureAt(circleAsSpline(), 1.3), 1.0, 1e-12);
}

TEST(Ends, OfALineAreItsOwnPoints) {
    const LineShape shape = line(0.1, 0.2, 1.0 / 3.0, 0.7);
    EXPECT_EQ(startPoint(shape), shape.start);
    EXPECT_EQ(endPoint(shape), shape.end);
}

TEST(Ends, AreMissingWhereTheCurveIsUnbounded) {
    EXPECT_EQ(startPoint(RayShape{{1, 2}, {1, 0}}), (Vec2{1, 2}));
    EXPECT_EQ(endPoint(RayShape{{1, 2}, {1, 0}}), std::nullopt);
    EXPECT_EQ(startPoint(XlineShape{{1, 2}, {1, 0}}), std::nullopt);
}

TEST(Closedness, CountsOpenKindsWhoseEndsMeet) {
    EXPECT_TRUE(isClosed(circleAsSpline()));
    EXPECT_TRUE(isClosed(ArcShape{{0, 0}, 1, 1, 1 + 2 * kPi}));
    EXPECT_TRUE(isClosed(square(1)));
    EXPECT_FALSE(isClosed(ArcShape{{0, 0}, 1, 0, 6}));
    EXPECT_FALSE(isClosed(XlineShape{{0, 0}, {1, 0}}));
}

TEST(Bounds, OfAnArcReachToWhereItTurnsBack) {
    const Box box = boundsOf(ArcShape{{0, 0}, 2, kPi / 4, 1.25 * kPi});
    EXPECT_THAT(box.low, IsAt(Vec2{-2, -std::sqrt(2.0)}));
    EXPECT_THAT(box.high, IsAt(Vec2{std::sqrt(2.0), 2}));
}

TEST(Bounds, HoldEveryPointOfEveryCurve) {
    RandomCurves random(11);
    for (const CurveKind kind : kAllCurveKinds) {
        for (int i = 0; i < 20; ++i) {
            const Shape shape = random.make(kind);
            const Box box = boundsOf(shape).grownBy(1e-9);
            for (const Vec2 p : chordsOf(shape, 50).points) {
                ASSERT_EQ(box.distanceTo(p), 0.0) << "kind " << static_cast<int>(kind) << ", curve " << i;
            }
        }
    }
}

TEST(ManyPoints, AreThoseOfSingleQuestions) {
    RandomCurves random(12);
    for (const CurveKind kind : kAllCurveKinds) {
        const Shape shape = random.make(kind);
        const Chords chords = chordsOf(shape, 7);
        for (std::size_t i = 0; i < chords.params.size(); ++i) {
            EXPECT_EQ(chords.points[i], pointAt(shape, chords.params[i]));
        }
    }
}

TEST(Parameter, ThatIsNotFiniteIsRefused) {
    EXPECT_THROW(pointAt(line(0, 0, 1, 1), std::nan("")), GeometryError);
    EXPECT_THROW(tangentAt(circleAsSpline(), std::numeric_limits<double>::infinity()), GeometryError);
    EXPECT_THROW(normalised(square(1), std::nan("")), GeometryError);
}

}  // namespace
}  // namespace holdfast::geometry
