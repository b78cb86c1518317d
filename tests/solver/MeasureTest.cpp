#include "solver/src/sketch/Measure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {
namespace {

double measuredIn(const char* text) {
    const SketchText sketch(text);
    return measured(sketch.sketch, static_cast<int>(sketch.sketch.constraints.size()) - 1);
}

constexpr double kDegree = std::numbers::pi / 180.0;

TEST(Measure, ReadsEveryDimensionOffTheFigure) {
    EXPECT_NEAR(measuredIn("line a 0,0 3,4; measured distance a = 99"), 5.0, 1e-12);
    EXPECT_NEAR(measuredIn("point p 1,1; point q 4,5; distance p q = 99"), 5.0, 1e-12);
    EXPECT_NEAR(measuredIn("point p 1,-3; line a 0,0 9,0; distance p a = 99"), 3.0, 1e-12);
    EXPECT_NEAR(measuredIn("circle c 0,0 2; circle d 9,0 3; distance c d = 99"), 4.0, 1e-12);
    EXPECT_NEAR(measuredIn("circle c 0,7 2; line a -5,0 5,0; distance c a = 99"), 5.0, 1e-12);
    EXPECT_NEAR(measuredIn("arc k 0,0 5 0 90; distance k = 99"), 2.5 * std::numbers::pi, 1e-12);
    EXPECT_NEAR(measuredIn("point p 1,1; point q 4,5; distance_x q p = 99"), -3.0, 1e-12);
    EXPECT_NEAR(measuredIn("point p 1,1; point q 4,5; distance_y p q = 99"), 4.0, 1e-12);
    EXPECT_NEAR(measuredIn("circle c 0,0 2; radius c = 99"), 2.0, 1e-12);
    EXPECT_NEAR(measuredIn("polyline w 0,0:1 6,0; diameter w.segment:0 = 99"), 6.0, 1e-12);
}

TEST(Measure, TakesTheGapOfLinesFromTheMiddleOfTheSecond) {
    EXPECT_NEAR(measuredIn("line a 0,0 9,0; line b 5,-3 2,-3; distance a b = 99"), 3.0, 1e-12);
    EXPECT_NEAR(measuredIn("line a 0,0 9,0; line b 0,2 4,6; distance a b = 99"), 4.0, 1e-12);
    EXPECT_NEAR(measuredIn("line a 0,0 1,0; line b 20,2 24,2; distance a b = 99"), 2.0, 1e-12) << "beyond the first";
    EXPECT_NEAR(measuredIn("line a 0,0 9,0; xline x 3,5 30; distance a x = 99"), 5.0, 1e-12) << "from its base";
    EXPECT_NEAR(measuredIn("line a 0,0 9,0; ray r 3,-5 30; measured distance a r = 99"), 5.0, 1e-12);
    EXPECT_NEAR(measuredIn("polyline w 0,0 9,0 9,6 1,6; distance w.segment:2 w.segment:0 = 99"), 6.0, 1e-12);
}

TEST(Measure, GivesAnglesWithinOneTurn) {
    EXPECT_NEAR(measuredIn("line a 0,0 3,3; angle a = 10"), 45 * kDegree, 1e-12);
    EXPECT_NEAR(measuredIn("line a 0,0 3,3; angle a.end = 10"), 225 * kDegree, 1e-12);
    EXPECT_NEAR(measuredIn("line a 0,0 3,3; line b 0,0 5,0; angle a b = 10"), 315 * kDegree, 1e-12);
    EXPECT_NEAR(measuredIn("arc k 0,0 5 30 250; angle k = 10"), 220 * kDegree, 1e-12);
}

TEST(Measure, RefusesAConstraintThatMeasuresNothing) {
    EXPECT_THROW(measuredIn("line a 0,0 3,3; horizontal a"), SketchError);
}

TEST(Measure, SaysHowFarEachConstraintIsFromHolding) {
    const SketchText sketch("line a 0,0 3,0.5; circle c 0,9 2; horizontal a; radius c = 2.25; off vertical a");
    const std::vector<double> misses = violationsOf(sketch.sketch);
    EXPECT_NEAR(misses[0], 0.5, 1e-12);
    EXPECT_NEAR(misses[1], 0.25, 1e-12);
    EXPECT_EQ(misses[2], 0.0);
    EXPECT_EQ(misses.back(), 0.0);
}

}  // namespace
}  // namespace holdfast::solver::detail
