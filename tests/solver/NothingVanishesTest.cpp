#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "EditedSketch.h"
#include "Sketch.h"

// What an edit does not name neither vanishes nor turns over.
namespace holdfast::solver::detail {

TEST(LeastSurprise, DoesNotShrinkANeighbourToNextToNothing) {
    SketchText sketch(
        "line a 0,0 10,0; line b 10,0 10,5; line c 10,5 0,5; line d 0,5 0,0; coincident a.end b.start; "
        "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; parallel a c; parallel b d; "
        "perpendicular a b");
    for (const double degrees : {30.0, 45.0, 90.0, 180.0, 270.0}) {
        SketchText turned = sketch;
        const double angle = degrees * std::numbers::pi / 180.0;
        ASSERT_TRUE(turn(turned, "a", degrees).isSolved()) << degrees;
        EXPECT_NEAR(lengthOf(turned, "b"), 5.0, 1e-7) << degrees;
        EXPECT_NEAR(lengthOf(turned, "c"), 10.0, 1e-7) << degrees;
        EXPECT_NEAR(turned.at("d.start").x, -5.0 * std::sin(angle), 1e-7) << degrees;
        EXPECT_NEAR(turned.at("d.start").y, 5.0 * std::cos(angle), 1e-7) << degrees;
    }
}

/// No dimension asks for a sweep: where one end of an arc is led, the other one does not come to lie beside it.
TEST(LeastSurprise, LeavesSomethingOfAnArcWhoseEndADimensionLeads) {
    SketchText sketch(
        "fixed! point o 0,0; arc rim 0,-0.75 5 -13.34 53.13; arc band 0,0 5.2243 -21.37 54.91; line rib 3,3.25 "
        "3,4.2713; fixed rim.centre; coincident band.centre o; coincident band.start rim.start; coincident rib.start "
        "rim.end; coincident rib.end band.end; distance_y o rim.end = 3.25; distance_x o rim.end = 3");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    sketch.sketch.takeReference();
    ASSERT_TRUE(set(sketch, ConstraintType::distanceX, 6.0).isSolved());
    const Vec2 c = sketch.at("rim.centre"), a = sketch.at("rim.start"), b = sketch.at("rim.end");
    const double sweep = std::abs(std::atan2(cross(a - c, b - c), dot(a - c, b - c))) * 180.0 / std::numbers::pi;
    EXPECT_GT(sweep, 0.01 * 66.47);
}

/// A plate with a neck on it becomes half as wide. Its shoulders would be as good as gone; the neck has room.
TEST(LeastSurprise, NarrowsTheNeckOfAPlateBeforeItsShouldersAreGone) {
    SketchText sketch(
        "fixed! point origin 0,0; fixed! xline y 0,0 90; line left -6.5,1.85 -3.23,1.85; line flank 6.5,1.85 "
        "6.5,-1.85; "
        "line foot 6.5,-1.85 -6.5,-1.85; line other -6.5,-1.85 -6.5,1.85; line up -3.23,1.85 -3.23,3.85; "
        "line top -3.23,3.85 3.23,3.85; line down 3.23,3.85 3.23,1.85; line right 3.23,1.85 6.5,1.85; "
        "coincident right.end flank.start; coincident flank.end foot.start; coincident foot.end other.start; "
        "coincident other.end left.start; horizontal left; horizontal foot; vertical flank; vertical other; "
        "symmetric left.start flank.end origin; distance_y flank.start flank.end = -3.7; vertical up; "
        "coincident up.end top.start; horizontal top; coincident top.end down.start; vertical down; "
        "symmetric up.end top.end y; coincident left.end up.start; coincident right.start down.end; collinear left "
        "right; "
        "distance_y down.start down.end = -2; distance_x foot.start foot.end = -13");
    ASSERT_TRUE(set(sketch, ConstraintType::distanceX, -6.5).isSolved());
    EXPECT_GT(lengthOf(sketch, "left"), 0.0327);
    EXPECT_GT(lengthOf(sketch, "right"), 0.0327);
    EXPECT_NEAR(lengthOf(sketch, "foot"), 6.5, 1e-8);
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

/// Nothing of this outline is left to be chosen, on whichever part of the way it is looked at.
TEST(LeastSurprise, LeavesShouldersOfAPlateThatIsWhollyDetermined) {
    SketchText sketch(
        "fixed! point origin 0,0; fixed! xline y 0,0 90; line a -154,53 -103,53; line b -103,53 -103,61; "
        "line c -103,61 103,61; line d 103,61 103,53; line e 103,53 154,53; line f 154,53 154,-55; line g 154,-55 "
        "-154,-55; "
        "line h -154,-55 -154,53; horizontal a; coincident a.end b.start; coincident b.end c.start; coincident c.end "
        "d.start; "
        "coincident d.end e.start; horizontal e; coincident e.end f.start; coincident f.end g.start; horizontal g; "
        "coincident g.end h.start; vertical h; vertical b; vertical d; vertical f; coincident h.end a.start; "
        "distance_y f.end e.end = 108; distance_y origin e.end = 53; symmetric e.end a.start y; symmetric c.end b.end "
        "y; "
        "distance_y a.end b.end = 8; distance_x g.end f.end = 308; distance_x b.end c.end = 206");
    const int width = lastConstraintOf(sketch);
    const auto widened = [&](double value) {
        return solve(sketch.sketch, {.values = {{width, value}}, .keepsShapes = true});
    };
    EXPECT_FALSE(widened(308.5).isSolved());
    EXPECT_EQ(sketch.at("c.end"), (Vec2{103.0, 61.0}));
    EXPECT_TRUE(widened(306.0).isSolved());
    EXPECT_NEAR(lengthOf(sketch, "a"), 1.0, 1e-8);
}

/// The arc's end can come to the line by the arc's turning about its centre, or by its sweep's coming to nothing where
/// its start is on the line already.
TEST(LeastSurprise, ShrinksNothingAwayForAPlaceThatIsAskedOfIt) {
    SketchText sketch(
        "fixed! point o 0,0; fixed! line wall -20,0 -20,-30; arc r 0,0 25 216.8698976458 230; line t 0,0 -9,-9; "
        "coincident r.centre o; coincident t.start o; point_on_curve r.start wall; point_on_curve r.end wall");
    const int added = lastConstraintOf(sketch);
    const SolveResult result = solve(sketch.sketch, {.added = {added}, .keepsShapes = true});
    const double dx = sketch.at("r.end").x - sketch.at("r.start").x, dy = sketch.at("r.end").y - sketch.at("r.start").y;
    EXPECT_GT(std::hypot(dx, dy), 0.05) << result.isSolved();
}

/// The corners are arcs about the middle. They could stay on their circle until nothing is left of them, and beyond
/// that nowhere.
TEST(LeastSurprise, GrowsACircleBeforeItsArcsComeToNothing) {
    SketchText sketch(
        "fixed! point o 0,0; line a -16,-20 16,-20; line b 20,-16 20,16; line c 16,20 -16,20; line d -20,16 -20,-16; "
        "arc ab 0,0 25.61249695 -51.34019175 -38.65980825; arc bc 0,0 25.61249695 38.65980825 51.34019175; "
        "arc cd 0,0 25.61249695 128.65980825 141.34019175; arc da 0,0 25.61249695 218.65980825 231.34019175; "
        "coincident a.end ab.start; coincident ab.end b.start; coincident b.end bc.start; coincident bc.end c.start; "
        "coincident c.end cd.start; coincident cd.end d.start; coincident d.end da.start; coincident da.end a.start; "
        "coincident ab.centre o; concentric ab.centre bc.centre; concentric ab.centre cd.centre; "
        "concentric ab.centre da.centre; equal ab bc; equal ab cd; equal ab da; horizontal a; horizontal c; "
        "vertical b; vertical d; equal a b; equal a c; equal a d; distance a = 32");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    sketch.sketch.takeReference();
    const int length = lastConstraintOf(sketch);
    for (const double value : {48.0, 96.0}) {
        SketchData grown = sketch.sketch;
        ASSERT_TRUE(solve(grown, {.values = {{length, value}}, .keepsShapes = true}).isSolved()) << value;
        EXPECT_NEAR(grown.valuesOf(sketch.numbers.at("ab"))[2], 25.61249695 * value / 32.0, 0.05 * value) << value;
    }
}

/// Nothing but its middle, below or above the line's end, keeps the arc smooth with the line: from above it ends where
/// its sweep comes to nothing, and from below it would run back on the line.
TEST(LeastSurprise, NeverTurnsASmoothEndIntoACusp) {
    SketchText sketch(
        "fixed! xline x 0,0 0; fixed! xline y 0,0 90; circle hub -5.85,0 5.6; line v -0.5,5.9 -0.5,0; "
        "line h -0.5,5.44 0,5.44; arc r -0.5,6.5 1.0600 260 270; radius hub = 5.6; point_on_curve hub.centre x; "
        "vertical v; point_on_curve v.end x; distance_x v.end h.end = 0.5; horizontal h; point_on_curve h.end y; "
        "point_on_curve h.start v; coincident r.end h.start; point_on_curve r.centre v; point_on_curve r.start hub; "
        "tangent r hub; distance_y v.end h.end = 5.44");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    sketch.sketch.takeReference();
    const int height = lastConstraintOf(sketch);
    const SolveResult result = solve(sketch.sketch, {.values = {{height, 5.6}}, .keepsShapes = true});
    EXPECT_FALSE(result.isSolved());
    EXPECT_GT(sketch.at("r.centre").y, sketch.at("r.end").y);
}

/// Where small steps end, the sketch is shaken, and what that has turned over is no place that the way led to.
TEST(LeastSurprise, NeverTurnsAShortArcIntoAllOfItsCircle) {
    const std::string drawing =
        "fixed! xline y 0,0 90; line base 2.82,0 -2.82,0; line k -2.82,0 -0.003,0; line m 0.003,0 2.82,0; "
        "arc r 0,0.38 0.38 269.5 270.5; horizontal base; symmetric base.end base.start y; coincident base.end k.start; "
        "horizontal k; distance k = 2.817; symmetric k.end m.start y; coincident m.end base.start; coincident k.end "
        "r.start; coincident m.start r.end; radius r = 0.38; distance_x base.end base.start = 5.64";
    for (int i = 1; i <= 40; ++i) {
        SketchText sketch(drawing);
        ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
        const double width = 5.634 + 0.006 - 0.0003 * i;
        if (!solve(sketch.sketch, {.values = {{lastConstraintOf(sketch), width}}, .keepsShapes = true}).isSolved())
            continue;
        EXPECT_LT(sketch.at("k.end").x, sketch.at("m.start").x) << width;
    }
}

/// Every part of the way holds, and what the last one begins with is no solution only because it holds.
TEST(LeastSurprise, MakesNoEllipseWiderThanItIsLong) {
    SketchText sketch(
        "ellipse round 0,0 20,0 0.95; line long 20,0 -20,0; line wide 0,19 0,-19; internal long round as "
        "major_diameter; "
        "internal wide round as minor_diameter; distance_y wide.end wide.start = 38; distance_x long.end long.start = "
        "40");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    sketch.sketch.takeReference();
    sketch.sketch.constraints.back().value = 32.0;
    EXPECT_FALSE(solve(sketch.sketch, {.namesConflicts = false}).isSolved());
    EXPECT_NEAR(sketch.value("round", 2), 20.0, 1e-9);
}

}  // namespace holdfast::solver::detail
