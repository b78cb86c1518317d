#include "tests/geometry/RandomCurves.h"

#include <gtest/gtest.h>

#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

TEST(RandomCurves, AreTheSameForTheSameSeed) {
    RandomCurves one(5);
    RandomCurves other(5);
    for (const CurveKind kind : kAllCurveKinds) {
        EXPECT_EQ(one.make(kind), other.make(kind));
    }
    EXPECT_NE(one.make(CurveKind::line), RandomCurves(6).make(CurveKind::line));
}

TEST(ChordCrossings, AreThoseOfTheCurves) {
    const Chords circle = chordsOf(CircleShape{{0, 0}, 5}, 1000);
    const auto found = chordCrossings(circle, chordsOf(line(-10, 3, 10, 3), 7));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_THAT(found[0].point, IsNear(Vec2{4, 3}, 1e-3));
    EXPECT_THAT(found[1].point, IsNear(Vec2{-4, 3}, 1e-3));
    EXPECT_NEAR(found[1].paramB, 6.0, 1e-3);
}

TEST(ChordCrossings, LeaveOutShallowOnesAndThoseAtEnds) {
    EXPECT_TRUE(chordCrossings(chordsOf(line(0, 0, 10, 0), 5), chordsOf(line(0, -0.1, 10, 0.1), 5)).empty());
    EXPECT_TRUE(chordCrossings(chordsOf(line(0, 0, 10, 0), 5), chordsOf(line(9.95, -1, 9.95, 1), 5)).empty());
}

}  // namespace
}  // namespace holdfast::geometry
