#include <gtest/gtest.h>

#include <cmath>

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

int constraintOf(const SketchText& sketch, ConstraintType type) {
    for (std::size_t c = 0; c < sketch.sketch.constraints.size(); ++c)
        if (sketch.sketch.constraints[c].type == type)
            return static_cast<int>(c);
    return -1;
}

SolveResult set(SketchText& sketch, ConstraintType type, double value) {
    return solve(sketch.sketch, {.values = {{constraintOf(sketch, type), value}}, .keepsShapes = true});
}

double lengthOf(const SketchText& sketch, const char* line) {
    const Vec2 p = sketch.at(std::string(line) + ".start"), q = sketch.at(std::string(line) + ".end");
    return std::hypot(q.x - p.x, q.y - p.y);
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
        solve(sketch.sketch,
              {.values = {{static_cast<int>(sketch.sketch.constraints.size()) - 1, 40.0}}, .keepsShapes = true});
    ASSERT_FALSE(result.isSolved());
    ASSERT_TRUE(result.reached.has_value());
    // The arms stretch out at the distance of the fixed points and the length of b.
    const double most = std::hypot(18.0, 6.0) + 10.0;
    EXPECT_LT(result.reached->dimensions.at(0).goal, most);
    EXPECT_GT(result.reached->dimensions.at(0).goal, most - 0.5);
    EXPECT_EQ(sketch.at("a.end"), (Vec2{10.0, 0.0}));
}

TEST(LeastSurprise, DoesNotShrinkANeighbourToNextToNothing) {
    SketchText sketch(
        "line a 0,0 10,0; line b 10,0 10,5; line c 10,5 0,5; line d 0,5 0,0; coincident a.end b.start; "
        "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; parallel a c; parallel b d; "
        "perpendicular a b");
    for (const double degrees : {30.0, 45.0, 90.0, 180.0, 270.0}) {
        SketchText turned = sketch;
        const double angle = degrees * std::acos(-1.0) / 180.0;
        const int a = turned.valueOf("a.start");
        ASSERT_TRUE(
            solve(
                turned.sketch,
                {.targets = {{a, 0.0}, {a + 1, 0.0}, {a + 2, 10.0 * std::cos(angle)}, {a + 3, 10.0 * std::sin(angle)}},
                 .edited = {turned.numbers.at("a")},
                 .keepsShapes = true})
                .isSolved())
            << degrees;
        EXPECT_NEAR(lengthOf(turned, "b"), 5.0, 1e-7) << degrees;
        EXPECT_NEAR(lengthOf(turned, "c"), 10.0, 1e-7) << degrees;
        EXPECT_NEAR(turned.at("d.start").x, -5.0 * std::sin(angle), 1e-7) << degrees;
        EXPECT_NEAR(turned.at("d.start").y, 5.0 * std::cos(angle), 1e-7) << degrees;
    }
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
    const int width = static_cast<int>(sketch.sketch.constraints.size()) - 1;
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
    const int added = static_cast<int>(sketch.sketch.constraints.size()) - 1;
    const SolveResult result = solve(sketch.sketch, {.added = {added}, .keepsShapes = true});
    const double dx = sketch.at("r.end").x - sketch.at("r.start").x, dy = sketch.at("r.end").y - sketch.at("r.start").y;
    EXPECT_GT(std::hypot(dx, dy), 0.05) << result.isSolved();
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
    const int length = static_cast<int>(sketch.sketch.constraints.size()) - 1;
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
    const int height = static_cast<int>(sketch.sketch.constraints.size()) - 1;
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
        if (!solve(sketch.sketch,
                   {.values = {{static_cast<int>(sketch.sketch.constraints.size()) - 1, width}}, .keepsShapes = true})
                 .isSolved())
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

TEST(LeastSurprise, TurnsAParallelLineAlongByAnyAngle) {
    for (const double degrees : {45.0, 89.99, 90.0, 180.0}) {
        SketchText sketch("line a 0,0 10,0; line b 0,5 10,5; parallel a b");
        const double angle = degrees * std::acos(-1.0) / 180.0;
        const int a = sketch.valueOf("a.start");
        ASSERT_TRUE(
            solve(
                sketch.sketch,
                {.targets = {{a, 0.0}, {a + 1, 0.0}, {a + 2, 10.0 * std::cos(angle)}, {a + 3, 10.0 * std::sin(angle)}},
                 .edited = {sketch.numbers.at("a")},
                 .keepsShapes = true})
                .isSolved())
            << degrees;
        EXPECT_NEAR(lengthOf(sketch, "b"), 10.0, 1e-7) << degrees;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << degrees;
    }
}

}  // namespace holdfast::solver::detail
