#include <gtest/gtest.h>

#include <cmath>

#include "EditedSketch.h"
#include "Sketch.h"

// What follows an edit: nothing that is not tied to it, shapes before places, along the way.
namespace holdfast::solver::detail {

namespace {

/// A slot: two arcs, two lines, and dimensions that place it.
SketchText slot() {
    return SketchText(
        "arc top 30,10 3 0 180; arc low 30,-10 3 180 360; line left 27,10 27,-10; line right 33,-10 33,10; "
        "fixed! point origin 0,0; coincident top.end left.start; coincident left.end low.start; "
        "coincident low.end right.start; coincident right.end top.start; vertical top.centre low.centre; tangent top "
        "left; tangent left low; "
        "tangent low right; tangent right top; equal top low; radius top = 3; "
        "distance_y low.centre top.centre = 20; distance_x origin top.centre = 30");
}

}  // namespace

TEST(LeastSurprise, MovesASlotByItsDimensionAsFarAsOneLikes) {
    for (const double shift : {1.0, 3.1, 15.0, 100.0, -2.9, -15.0, -29.0, -40.0}) {
        SketchText sketch = slot();
        ASSERT_TRUE(set(sketch, ConstraintType::distanceX, 30.0 + shift).isSolved()) << shift;
        EXPECT_NEAR(sketch.at("top.centre").x, 30.0 + shift, 1e-9) << shift;
        EXPECT_NEAR(sketch.at("left.start").x, 27.0 + shift, 1e-8) << shift;
        EXPECT_NEAR(sketch.at("right.start").x, 33.0 + shift, 1e-8) << shift;
        EXPECT_NEAR(lengthOf(sketch, "left"), 20.0, 1e-8) << shift;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << shift;
    }
}

TEST(LeastSurprise, TakesAlongWhatHangsOnWhatIsFullyDetermined) {
    // No number of the bar is left to be chosen, so no unknown leads from it to the rods.
    SketchText sketch(
        "fixed! point origin 0,0; line bar 0,0 10,0; line rod 10,0 16,8; line next 16,8 20,8; "
        "coincident origin bar.start; horizontal bar; coincident bar.end rod.start; "
        "distance_x rod.start rod.end = 6; distance_y rod.start rod.end = 8; coincident rod.end next.start; "
        "distance bar = 10");
    ASSERT_TRUE(set(sketch, ConstraintType::distance, 14.0).isSolved());
    EXPECT_NEAR(sketch.at("rod.start").x, 14.0, 1e-9);
    EXPECT_NEAR(sketch.at("rod.end").x, 20.0, 1e-9);
    EXPECT_NEAR(sketch.at("next.start").x, 20.0, 1e-9);
    EXPECT_NEAR(lengthOf(sketch, "next"), 4.0, 1e-8);
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

TEST(LeastSurprise, WidensARectangleElsewhereThatIsAsWide) {
    // Level lines that are as long as each other have no unknown in common once one length is known.
    for (const double asked : {3.15, 6.0, 1.5}) {
        SketchText sketch(
            "line a 84,25 87,25; line b 87,25 87,-60; line c 84,-60 84,25; line far -50,70 -53,70; "
            "coincident a.end b.start; coincident c.end a.start; horizontal a; vertical b; vertical c; horizontal far; "
            "distance_x far.end far.start = 3; equal a far");
        ASSERT_TRUE(set(sketch, ConstraintType::distanceX, asked).isSolved()) << asked;
        EXPECT_NEAR(lengthOf(sketch, "far"), asked, 1e-9) << asked;
        EXPECT_NEAR(lengthOf(sketch, "a"), asked, 1e-9) << asked;
        EXPECT_NEAR(lengthOf(sketch, "b"), 85.0, 1e-8) << asked;
        EXPECT_LT(sketch.worstViolation(), 1e-9) << asked;
    }
}

TEST(LeastSurprise, LetsALineTurnRoundWhereTheWayLeadsOverNoLength) {
    // The slot is led past the mark, so that the gauge has no length on the way: any few steps go over that place.
    for (const double asked : {36.0, 45.0, 60.0}) {
        SketchText sketch = slot();
        for (const char* more : {"line gauge 30,20 40,20", "fixed! point mark 40,20", "vertical top.centre gauge.start",
                                 "coincident gauge.end mark", "horizontal gauge"})
            sketch.add(more);
        sketch.sketch.takeReference();
        ASSERT_TRUE(set(sketch, ConstraintType::distanceX, asked).isSolved()) << asked;
        EXPECT_NEAR(sketch.at("gauge.start").x, asked, 1e-9) << asked;
        EXPECT_NEAR(sketch.at("left.start").x, asked - 3.0, 1e-8) << asked;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << asked;
    }
}

TEST(LeastSurprise, ShiftsASplineThatHangsOnAPulledLine) {
    SketchText sketch(
        "line run 0,0 20,0; spline lead 3 20,0 30,0 36,8 44,20; line off 44,20 50,29; "
        "coincident run.end lead.start; coincident lead.end off.start; tangent run lead; horizontal run");
    const SketchText before = sketch;
    const int start = sketch.valueOf("off.start");
    ASSERT_TRUE(solve(sketch.sketch, {.targets = {{start, 54.0}, {start + 1, 28.0}},
                                      .edited = {sketch.numbers.at("off")},
                                      .keepsShapes = true})
                    .isSolved());
    for (int i = 0; i < 8; ++i)
        EXPECT_NEAR(sketch.value("lead", i), before.value("lead", i) + (i % 2 == 0 ? 10.0 : 8.0), 1e-7) << i;
    EXPECT_NEAR(lengthOf(sketch, "run"), 20.0, 1e-7);
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

TEST(LeastSurprise, ShiftsAPolylineThatHangsOnAPulledLine) {
    SketchText sketch(
        "line off 0,0 20,0; polyline plate 20,0 40,0 40,12:0.4 30,20 20,12 closed; "
        "coincident off.end plate.segment:0.start");
    const SketchText before = sketch;
    const int end = sketch.valueOf("off.end");
    ASSERT_TRUE(
        solve(sketch.sketch,
              {.targets = {{end, 30.0}, {end + 1, 8.0}}, .edited = {sketch.numbers.at("off")}, .keepsShapes = true})
            .isSolved());
    for (const char* place : {"plate.segment:0.start", "plate.segment:1.start", "plate.segment:2.start",
                              "plate.segment:3.start", "plate.segment:4.start"}) {
        EXPECT_NEAR(sketch.at(place).x, before.at(place).x + 10.0, 1e-7) << place;
        EXPECT_NEAR(sketch.at(place).y, before.at(place).y + 8.0, 1e-7) << place;
    }
}

TEST(LeastSurprise, LeadsADimensionThatAPlainSolveFindsChanged) {
    SketchText sketch = slot();
    sketch.sketch.constraints[static_cast<std::size_t>(constraintOf(sketch, ConstraintType::distanceX))].value = 60.0;
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    EXPECT_NEAR(sketch.at("left.start").x, 57.0, 1e-8);
}

TEST(LeastSurprise, WidensASlotWithoutLengtheningIt) {
    SketchText sketch = slot();
    ASSERT_TRUE(set(sketch, ConstraintType::radius, 5.0).isSolved());
    EXPECT_NEAR(sketch.at("left.start").x, 25.0, 1e-8);
    EXPECT_NEAR(lengthOf(sketch, "right"), 20.0, 1e-8);
}

TEST(LeastSurprise, TakesAlongWhatIsTiedToAPlaceThatADimensionDecides) {
    SketchText sketch(
        "fixed! point o 0,0; point p 10,0; line a 10,0 10,8; line b 10,8 4,16; point q 4,16; horizontal o p; "
        "distance_x o p = 10; coincident p a.start; coincident a.end b.start; distance a = 8; distance b = 10; "
        "coincident b.end q");
    ASSERT_TRUE(set(sketch, ConstraintType::distanceX, 15.0).isSolved());
    EXPECT_EQ(sketch.at("p"), (Vec2{15.0, 0.0}));
    EXPECT_EQ(sketch.at("a.start"), (Vec2{15.0, 0.0}));
    EXPECT_NEAR(lengthOf(sketch, "a"), 8.0, 1e-9);
    EXPECT_LT(sketch.worstViolation(), 1e-9);
}

TEST(LeastSurprise, LeavesAnotherPartAloneThatDoesNotHold) {
    SketchText sketch("line a 0,0 10,1; line b 0,5 10,5; horizontal a; horizontal b");
    const SolveResult result = solve(
        sketch.sketch,
        {.targets = {{sketch.valueOf("b.start") + 1, 6.0}}, .edited = {sketch.numbers.at("b")}, .keepsShapes = true});
    ASSERT_TRUE(result.isSolved());
    EXPECT_EQ(sketch.at("a.end"), (Vec2{10.0, 1.0}));
    EXPECT_EQ(sketch.at("b.end"), (Vec2{10.0, 6.0}));
    EXPECT_EQ(sketch.namesOf(result.leftAlone), "c0");
}

TEST(LeastSurprise, IsNotStoppedByAnotherPartThatContradictsItself) {
    SketchText sketch("line a 0,0 10,0; line b 0,5 10,5; horizontal a; vertical a; distance a = 10");
    const SolveResult result = solve(
        sketch.sketch,
        {.targets = {{sketch.valueOf("b.start") + 1, 6.0}}, .edited = {sketch.numbers.at("b")}, .keepsShapes = true});
    ASSERT_TRUE(result.isSolved());
    EXPECT_EQ(sketch.at("a.end"), (Vec2{10.0, 0.0}));
    EXPECT_FALSE(result.leftAlone.empty());
}

TEST(LeastSurprise, KeepsWhatHeldInAPartThatContradictsItself) {
    SketchText sketch(
        "line a 0,0 10,0; line b 10,0 10,5; coincident a.end b.start; distance b = 5; "
        "fixed! point o 0,20; distance_y o a.start = -20; distance_y o a.start = -21");
    const SolveResult result =
        solve(sketch.sketch,
              {.targets = {{sketch.valueOf("a.end"), 12.0}}, .edited = {sketch.numbers.at("a")}, .keepsShapes = true});
    ASSERT_TRUE(result.isSolved());
    EXPECT_EQ(sketch.namesOf(result.leftAlone), "c3");
    EXPECT_NEAR(sketch.at("b.start").x, 12.0, 1e-9);
    EXPECT_NEAR(lengthOf(sketch, "b"), 5.0, 1e-9);
}

TEST(LeastSurprise, LeavesTheOtherEndOfAnEditedLineWhereItIs) {
    SketchText sketch("line a 0,0 10,0; line e 0,5 10,5; equal a e");
    const int end = sketch.valueOf("a.end"), start = sketch.valueOf("a.start");
    ASSERT_TRUE(solve(sketch.sketch, {.targets = {{end, 15.0}, {end + 1, 0.0}},
                                      .kept = {{start, 0.0}, {start + 1, 0.0}},
                                      .edited = {sketch.numbers.at("a")},
                                      .keepsShapes = true})
                    .isSolved());
    EXPECT_EQ(sketch.at("a.start"), (Vec2{0.0, 0.0}));
    EXPECT_NEAR(lengthOf(sketch, "e"), 15.0, 1e-9);
}

TEST(LeastSurprise, SaysHowFarADimensionCouldBeLed) {
    SketchText sketch(
        "fixed! point o 0,0; line a 0,0 10,0; line b 10,0 18,6; fixed! point p 18,6; coincident o a.start; "
        "coincident a.end b.start; coincident b.end p; distance b = 10; distance a = 10");
    const SolveResult result =
        solve(sketch.sketch, {.values = {{lastConstraintOf(sketch), 40.0}}, .keepsShapes = true});
    ASSERT_FALSE(result.isSolved());
    ASSERT_TRUE(result.reached.has_value());
    // The arms stretch out at the distance of the fixed points and the length of b.
    const double most = std::hypot(18.0, 6.0) + 10.0;
    EXPECT_LT(result.reached->dimensions.at(0).goal, most);
    EXPECT_GT(result.reached->dimensions.at(0).goal, most - 0.5);
    EXPECT_EQ(sketch.at("a.end"), (Vec2{10.0, 0.0}));
}

/// At its dead centre a crank has no slope that tells it where to go: it is shaken, and nothing else.
TEST(LeastSurprise, MovesNothingThatHangsOnNothingWhereACrankLeavesItsDeadCentre) {
    SketchText sketch(
        "fixed! point origin 0,0; fixed! xline x 0,0 0; line crank 0,0 10,0; line rod 10,0 20,0; line other 50,50 "
        "60,50; "
        "coincident crank.start origin; coincident crank.end rod.start; point_on_curve rod.end x; horizontal other; "
        "distance crank = 10; distance rod = 10; distance_x origin rod.end = 20");
    ASSERT_TRUE(set(sketch, ConstraintType::distanceX, 16.0).isSolved());
    EXPECT_NEAR(sketch.at("crank.end").x, 8.0, 1e-7);
    EXPECT_NEAR(std::abs(sketch.at("crank.end").y), 6.0, 1e-7);
    EXPECT_EQ(sketch.at("other.start"), (Vec2{50.0, 50.0}));
    EXPECT_EQ(sketch.at("other.end"), (Vec2{60.0, 50.0}));
}

/// The flanks of a hand run nearly parallel to where they touch its round tip: the first hundredth of a larger radius
/// makes them half as long, the rest of it little shorter.
TEST(LeastSurprise, FollowsARadiusWhoseFirstBitMovesTheMost) {
    for (const double radius : {1.05, 1.2, 1.4}) {
        SketchText sketch(
            "fixed! point origin 0,0; fixed! xline x 0,0 0; point nose 16,0; line root 3.1,1.125 3.1,-1.125; "
            "line upper 3.1,1.125 17.009,1; line lower 3.1,-1.125 17.009,-1; "
            "arc tip 17.0000404,0 1.0000404 -89.484748 89.484748; symmetric root.start root.end x; "
            "coincident upper.start root.start; coincident lower.start root.end; symmetric upper.end lower.end x; "
            "distance_y lower.end upper.end = 2; distance_y root.end root.start = 2.25; coincident tip.end upper.end; "
            "coincident tip.start lower.end; tangent tip upper; point_on_curve nose tip; point_on_curve nose x; "
            "distance origin nose = 16; radius tip = 1.0000404");
        ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
        sketch.sketch.takeReference();
        ASSERT_TRUE(set(sketch, ConstraintType::radius, radius).isSolved()) << radius;
        EXPECT_NEAR(sketch.at("tip.centre").x, 16.0 + radius, 1e-8) << radius;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << radius;
    }
}

/// Two slots, each in the mirror of the other, are pulled apart by many times their width.
TEST(LeastSurprise, PullsSlotsApartByMoreThanTheyAreWide) {
    for (const double by : {1.0, 9.0, 88.0}) {
        SketchText sketch(
            "fixed! xline x 0,0 0; fixed! xline y 0,0 90; arc a 44,17 0.4 -90 90; arc b -44,17 0.4 90 270; "
            "arc c 44,-17 0.4 -90 90; arc d -44,-17 0.4 90 270; line low -44,16.6 44,16.6; line high -44,17.4 44,17.4; "
            "line deep -44,-17.4 44,-17.4; line next -44,-16.6 44,-16.6; coincident low.end a.start; "
            "coincident high.end a.end; coincident b.start high.start; coincident b.end low.start; "
            "coincident deep.end c.start; coincident next.end c.end; coincident d.start next.start; "
            "coincident d.end deep.start; horizontal low; tangent a low; tangent a high; tangent b low; tangent b "
            "high; "
            "tangent c deep; tangent c next; tangent d deep; tangent d next; symmetric b.centre a.centre y; "
            "symmetric a.centre c.centre x; symmetric b.centre d.centre x; equal a c; equal c d");
        const int end = sketch.valueOf("low.end");
        ASSERT_TRUE(solve(sketch.sketch, {.targets = {{end, 44.0}, {end + 1, 16.6 + by}},
                                          .edited = {sketch.numbers.at("low")},
                                          .keepsShapes = true,
                                          .patience = Patience::way})
                        .isSolved())
            << by;
        EXPECT_NEAR(sketch.at("high.end").y, 17.4 + by, 1e-7) << by;
        EXPECT_NEAR(sketch.at("next.end").y, -16.6 - by, 1e-7) << by;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << by;
    }
}

/// A straight arm buckles only when it is shaken. What hangs on its joint goes along with its place, and not with sizes
/// that nothing has to do with.
TEST(LeastSurprise, ShakesNothingThatDoesNotFollow) {
    SketchText sketch(
        "fixed! point o 0,0; fixed! xline x 0,0 0; line a 0,0 10,0; line b 10,0 20,0; coincident a.start o; "
        "coincident a.end b.start; distance a = 10; distance b = 10; point_on_curve b.end x; circle c 10,0 3; "
        "coincident c.centre a.end; circle d 50,40 3; equal c d; circle e 10,0 5; coincident e.centre a.end");
    const int end = sketch.valueOf("b.end");
    ASSERT_TRUE(
        solve(sketch.sketch,
              {.targets = {{end, 15.0}, {end + 1, 0.0}}, .edited = {sketch.numbers.at("b")}, .keepsShapes = true})
            .isSolved());
    EXPECT_NEAR(sketch.at("c.centre").x, 7.5, 1e-8);
    EXPECT_EQ(sketch.value("c", 2), 3.0);
    EXPECT_EQ(sketch.value("d", 2), 3.0);
    EXPECT_EQ(sketch.value("e", 2), 5.0);
    EXPECT_EQ(sketch.at("d.centre"), (Vec2{50, 40}));
}

/// The arm from the centre to the end of `mirror` is straight when the line is turned by some 12 degrees. There it
/// could fold to the other side, but then its joint would leave the place where it has been all the way.
TEST(LeastSurprise, GoesOnStraightWhereTwoWaysCross) {
    SketchText sketch(
        "fixed! point o 0,0; fixed! xline y 0,0 90; fixed! line axis -30,30 0,0; "
        "arc low 0,0 12.466666666666667 146.5682325 180; line turning -10.403963,6.868430 -28.960686,25.778706; "
        "line mirror -25.778706,28.960686 -6.868430,10.403963; line up 0,12.466666666666667 0,0; "
        "arc top 0,0 12.466666666666667 90 123.4317675; coincident low.centre o; equal mirror turning; "
        "symmetric mirror.start turning.end axis; coincident top.end mirror.end; coincident low.start turning.start; "
        "point_on_curve up.start y; equal low top; coincident top.start up.start; concentric low.centre top.centre");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    sketch.sketch.takeReference();
    const Vec2 joint = sketch.at("mirror.end"), a = sketch.at("turning.start"), b = sketch.at("turning.end") - a;
    const int v = sketch.valueOf("turning.start");
    ASSERT_TRUE(solve(sketch.sketch, {.targets = {{v, a.x}, {v + 1, a.y}, {v + 2, a.x - b.y}, {v + 3, a.y + b.x}},
                                      .edited = {sketch.numbers.at("turning")},
                                      .keepsShapes = true})
                    .isSolved());
    EXPECT_NEAR(sketch.at("mirror.end").x, joint.x, 1e-6);
    EXPECT_NEAR(sketch.at("mirror.end").y, joint.y, 1e-6);
}

TEST(LeastSurprise, TurnsAParallelLineAlongByAnyAngle) {
    for (const double degrees : {45.0, 89.99, 90.0, 180.0}) {
        SketchText sketch("line a 0,0 10,0; line b 0,5 10,5; parallel a b");
        ASSERT_TRUE(turn(sketch, "a", degrees).isSolved()) << degrees;
        EXPECT_NEAR(lengthOf(sketch, "b"), 10.0, 1e-7) << degrees;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << degrees;
    }
}

}  // namespace holdfast::solver::detail
