#include "solver/src/diagnosis/FreeMotions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {
namespace {

std::string wordOf(const FreeMotion& motion) {
    const auto at = [](Vec2 p) {
        const auto digits = [](double x) { return std::to_string(static_cast<int>(std::lround(10 * x))); };
        return " " + digits(p.x) + "," + digits(p.y);
    };
    switch (motion.kind) {
        case MotionKind::slide:
            return "slide" + at(motion.direction);
        case MotionKind::turn:
            return "turn" + at(motion.centre);
        case MotionKind::length:
            return motion.isAtStart ? "start" : "end";
        case MotionKind::radius:
            return "radius";
        case MotionKind::other:
            return "other";
    }
    return "";
}

/// What an element can do, with directions and centres in tenths.
std::string motionsOf(const char* text, const char* entity) {
    const SketchText sketch(text);
    const auto number = static_cast<std::size_t>(sketch.numbers.at(entity));
    const EntityMotions found = freeMotionsOf(sketch.sketch)[number];
    std::string words = found.isFree ? "free:" : "";
    for (const FreeMotion& motion : found.motions)
        words += (words.empty() ? "" : " ") + wordOf(motion);
    return words;
}

TEST(FreeMotions, OfWhatNothingHoldsAreAllItHas) {
    EXPECT_EQ(motionsOf("point p 1,2", "p"), "free: slide 10,0 slide 0,10");
    EXPECT_EQ(motionsOf("line a 0,0 5,0", "a"), "free: slide 10,0 slide 0,10 turn 0,0 end");
    EXPECT_EQ(motionsOf("circle c 4,5 2", "c"), "free: slide 10,0 slide 0,10 radius");
    EXPECT_EQ(motionsOf("arc k 0,0 5 0 90", "k"), "free: slide 10,0 slide 0,10 turn 0,0 radius end");
}

TEST(FreeMotions, OfAFixedOrDeterminedElementAreNone) {
    EXPECT_EQ(motionsOf("fixed! line a 0,0 5,0; point p 9,9", "a"), "");
    EXPECT_EQ(motionsOf("line a 0,0 5,0; fixed a.start; horizontal a; distance a = 5", "a"), "");
    EXPECT_EQ(motionsOf("line a 0,0 5,0; fixed a.start; horizontal a; distance a = 5; point p 1,1", "a"), "");
}

TEST(FreeMotions, TellAboutWhatALineCanTurn) {
    EXPECT_EQ(motionsOf("line a 2,1 7,1; fixed a.start; distance a = 5", "a"), "turn 20,10");
    EXPECT_EQ(motionsOf("line a 2,1 7,1; fixed a.start", "a"), "turn 20,10 end");
}

TEST(FreeMotions, TellAlongWhatALineCanSlide) {
    EXPECT_EQ(motionsOf("line a 0,0 4,3; fixed! xline x 0,0 36.86989764584402; distance a = 5; collinear a x", "a"),
              "slide 8,6");
    EXPECT_EQ(motionsOf("line a 0,0 5,0; line b 5,0 5,4; horizontal a; distance a = 5; fixed! point o 0,9; "
                        "horizontal o b.end; distance b = 4; vertical b; coincident a.end b.start; distance_y o "
                        "a.start = -9",
                        "b"),
              "slide 10,0");
}

TEST(FreeMotions, TellTheInstantCentreOfARod) {
    // Its ends run along both axes: it turns about the corner of the rectangle over them.
    EXPECT_EQ(motionsOf("line a 3,0 0,4; distance a = 5; fixed! xline x 0,0 0; fixed! xline y 0,0 90; point_on_curve "
                        "a.start x; point_on_curve a.end y",
                        "a"),
              "turn 30,40");
}

TEST(FreeMotions, LeaveOutWhatComesBackWhenItIsTried) {
    // Stretched out, the arm's elbow can move by first derivatives alone.
    EXPECT_EQ(motionsOf("line a 0,0 5,0; line b 5,0 10,0; distance a = 5; distance b = 5; coincident a.end b.start; "
                        "fixed a.start; fixed b.end",
                        "a"),
              "");
}

TEST(FreeMotions, GiveRatesThatKeepTheConstraints) {
    const SketchText sketch("line a 2,1 7,1; fixed a.start; distance a = 5");
    const std::vector<double> rates = freeMotionsOf(sketch.sketch).front().motions.front().rates;
    ASSERT_EQ(rates.size(), 4u);
    EXPECT_NEAR(rates[2], 0.0, 1e-9);
    EXPECT_NEAR(std::abs(rates[3]), 1.0, 1e-9);
}

}  // namespace
}  // namespace holdfast::solver::detail
