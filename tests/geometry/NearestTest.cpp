#include "geometry/curves/Nearest.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/GeometryError.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

using testing::Optional;

TEST(Nearest, OnALineIsTheFootOrAnEnd) {
    const LineShape shape = line(0, 0, 10, 0);
    EXPECT_THAT(nearestOn(shape, {4, 3}).point, IsAt(Vec2{4, 0}));
    EXPECT_DOUBLE_EQ(nearestOn(shape, {4, 3}).distance, 3.0);
    EXPECT_DOUBLE_EQ(nearestOn(shape, {13, 4}).distance, 5.0);
    EXPECT_DOUBLE_EQ(nearestOn(shape, {13, 4}, Extent::carrier).param, 13.0);
}

TEST(Nearest, OnAnArcIsTheNearerEndInTheGap) {
    const ArcShape arc{{0, 0}, 5, 0, kPi};
    EXPECT_THAT(nearestOn(arc, {3, -4}).point, IsAt(Vec2{5, 0}));
    EXPECT_DOUBLE_EQ(nearestOn(arc, {-3, -4}).param, kPi);
    EXPECT_THAT(nearestOn(arc, {3, -4}, Extent::carrier).point, IsAt(Vec2{3, -4}));
}

TEST(Nearest, FromTheCentreOfACircleIsAnyOfItsPoints) {
    EXPECT_DOUBLE_EQ(nearestOn(CircleShape{{1, 1}, 5}, {1, 1}).distance, 5.0);
    EXPECT_DOUBLE_EQ(nearestOn(EllipseShape{{1, 1}, {0, 5}, 0.4}, {1, 1}).distance, 2.0);
}

TEST(Nearest, OnAPolylineIsFoundAcrossVertices) {
    EXPECT_DOUBLE_EQ(nearestOn(square(10), {12, 4}).param, 1.4);
    EXPECT_DOUBLE_EQ(nearestOn(square(10), {-1, -1}).param, 0.0);
    EXPECT_DOUBLE_EQ(nearestOn(polyline({{0, 0}, {10, 0}}), {14, 3}, Extent::carrier).param, 1.4);
}

TEST(Nearest, IsNoFartherThanAnySampledPoint) {
    RandomCurves random(31);
    for (const CurveKind kind : kAllCurveKinds) {
        for (int i = 0; i < 25; ++i) {
            const Shape shape = random.make(kind);
            const Vec2 from = random.point(15.0);
            const Nearest nearest = nearestOn(shape, from);
            for (const Vec2 p : chordsOf(shape, 300).points) {
                ASSERT_LE(nearest.distance, distance(from, p) + 1e-9) << static_cast<int>(kind) << " curve " << i;
            }
            EXPECT_THAT(pointAt(shape, nearest.param), IsAt(nearest.point));
            EXPECT_NEAR(distance(from, nearest.point), nearest.distance, 1e-9);
        }
    }
}

TEST(ParamAtPoint, ReturnsTheParameterThatMadeThePoint) {
    RandomCurves random(32);
    for (const CurveKind kind : kAllCurveKinds) {
        for (int i = 0; i < 25; ++i) {
            const Shape shape = random.make(kind);
            const Chords chords = chordsOf(shape, 1);
            const double t = random.number(chords.params.front(), chords.params.back());
            const auto param = paramAtPoint(shape, pointAt(shape, t));
            ASSERT_TRUE(param) << static_cast<int>(kind);
            EXPECT_THAT(pointAt(shape, *param), IsNear(pointAt(shape, t), 1e-11));
        }
    }
}

TEST(ParamAtPoint, IsNoneAwayFromTheCurve) {
    EXPECT_EQ(paramAtPoint(line(0, 0, 10, 0), {5, 1e-3}), std::nullopt);
    EXPECT_THAT(paramAtPoint(line(0, 0, 10, 0), {5, 1e-3}, 0.01), Optional(5.0));
    EXPECT_EQ(paramAtPoint(line(0, 0, 10, 0), {11, 0}), std::nullopt);
    EXPECT_THAT(paramAtPoint(line(0, 0, 10, 0), {11, 0}, 1e-6, Extent::carrier), Optional(11.0));
}

TEST(Nearest, RefusesAPointThatIsNotFinite) {
    EXPECT_THROW(nearestOn(line(0, 0, 1, 0), {std::nan(""), 0}), GeometryError);
}

TEST(Nearest, HoldsInSmallFarAndLargeDrawings) {
    for (const double scale : {1e-3, 1.0, 1e5}) {
        const EllipseShape ellipse{{7e3 * scale, 0}, {5 * scale, 0}, 0.6};
        const Nearest nearest = nearestOn(ellipse, {7e3 * scale, 9 * scale});
        EXPECT_THAT(nearest.point, IsNear(Vec2{7e3 * scale, 3 * scale}, 1e-9 * scale));
    }
}

}  // namespace
}  // namespace holdfast::geometry
