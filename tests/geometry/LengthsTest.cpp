#include "geometry/curves/Lengths.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/GeometryError.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

TEST(Length, OfSimpleCurvesIsTheTextbooks) {
    EXPECT_DOUBLE_EQ(lengthOf(line(0, 0, 3, 4)), 5.0);
    EXPECT_DOUBLE_EQ(lengthOf(ArcShape{{0, 0}, 2, 1, 2.5}), 3.0);
    EXPECT_DOUBLE_EQ(lengthOf(CircleShape{{0, 0}, 2}), 4 * kPi);
    EXPECT_NEAR(lengthOf(circleAsSpline()), 2 * kPi, 1e-11);
    EXPECT_TRUE(std::isinf(lengthOf(RayShape{{0, 0}, {1, 0}})));
}

/// The perimeter for axes 2 and 1: 8 E(3/4), E the complete elliptic integral of the second kind (Abramowitz and
/// Stegun, Handbook of Mathematical Functions, 17.3).
TEST(Length, OfAnEllipseIsTheEllipticIntegral) {
    EXPECT_NEAR(lengthOf(EllipseShape{{3, 4}, {0, 2}, 0.5}), 9.688448220547676, 1e-11);
}

TEST(Length, OfAPolylineCountsArcsAlongTheArc) {
    EXPECT_DOUBLE_EQ(lengthOf(polyline({{0, 0}, {10, 0}, {10, 10}}, {0, 1})), 10.0 + 5 * kPi);
    EXPECT_DOUBLE_EQ(lengthOf(polyline({{0, 0}, {10, 0}, {10, 10}}, {0, -1})), 10.0 + 5 * kPi);
    EXPECT_DOUBLE_EQ(lengthOf(square(3)), 12.0);
}

TEST(LengthBetween, IsNegativeBackwards) {
    EXPECT_DOUBLE_EQ(lengthBetween(line(0, 0, 10, 0), 7, 4), -3.0);
    EXPECT_DOUBLE_EQ(lengthBetween(square(10), 2.5, 0.5), -20.0);
}

TEST(Length, AgreesWithTheSumOfManyChords) {
    RandomCurves random(21);
    for (const CurveKind kind : kAllCurveKinds) {
        const Shape shape = random.make(kind);
        const Chords chords = chordsOf(shape, 4000);
        double sum = 0.0;
        for (std::size_t i = 1; i < chords.points.size(); ++i) {
            sum += distance(chords.points[i - 1], chords.points[i]);
        }
        EXPECT_NEAR(lengthBetween(shape, chords.params.front(), chords.params.back()), sum, 1e-4 * sum)
            << static_cast<int>(kind);
    }
}

TEST(ParamAtDistance, LeadsAsFarAsAsked) {
    RandomCurves random(22);
    for (const CurveKind kind : kAllCurveKinds) {
        for (int i = 0; i < 10; ++i) {
            const Shape shape = random.make(kind);
            const Chords chords = chordsOf(shape, 1);
            const double whole = lengthBetween(shape, chords.params.front(), chords.params.back());
            const double ahead = paramAtDistance(shape, chords.params.front(), 0.3 * whole);
            const double back = paramAtDistance(shape, chords.params.back(), -0.7 * whole);
            EXPECT_NEAR(lengthBetween(shape, chords.params.front(), ahead), 0.3 * whole, 1e-8 * whole);
            EXPECT_THAT(pointAt(shape, ahead), IsNear(pointAt(shape, back), 1e-7)) << static_cast<int>(kind);
        }
    }
}

TEST(ParamAtDistance, GoesOnAlongCarriersAndStopsWithSplines) {
    EXPECT_DOUBLE_EQ(paramAtDistance(line(0, 0, 10, 0), 10, 4), 14.0);
    EXPECT_DOUBLE_EQ(paramAtDistance(ArcShape{{0, 0}, 2, 0, 1}, 1, 4), 3.0);
    EXPECT_THROW(paramAtDistance(circleAsSpline(), 3.0, 4.0), GeometryError);
    EXPECT_THROW(paramAtDistance(square(1), 1.0, -1.5), GeometryError);
}

TEST(ParamAtDistance, RefusesNumbersThatAreNotFinite) {
    EXPECT_THROW(paramAtDistance(line(0, 0, 1, 0), 0, std::nan("")), GeometryError);
    EXPECT_THROW(lengthBetween(line(0, 0, 1, 0), 0, std::nan("")), GeometryError);
}

}  // namespace
}  // namespace holdfast::geometry
