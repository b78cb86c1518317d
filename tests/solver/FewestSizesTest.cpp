#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Sketch.h"

// Where a size has to change, the others are kept: few change by much instead of many by a little.
namespace holdfast::solver::detail {

namespace {

SketchText bracket() {
    return SketchText(
        "fixed! point o 0,0; line base 0,0 80,0; line right 80,0 80,30; arc round 70,30 10 0 90; line top 70,40 20,40; "
        "line chamfer 20,40 0,20; line left 0,20 0,0; line rib 40,0 40,55; "
        "coincident base.start o; horizontal base; vertical right; horizontal top; vertical left; "
        "coincident base.end right.start; coincident right.end round.start; coincident round.end top.start; "
        "coincident top.end chamfer.start; coincident chamfer.end left.start; coincident left.end base.start; "
        "tangent round right; tangent round top; vertical rib; point_on_curve rib.start base");
}

double sizeOf(const SketchText& sketch, const std::string& id) {
    const SketchEntity& entity = sketch.sketch.entities[static_cast<std::size_t>(sketch.numbers.at(id))];
    if (entity.kind != EntityKind::line)
        return sketch.value(id, 2);
    const Vec2 p = sketch.at(id + ".start"), q = sketch.at(id + ".end");
    return std::hypot(q.x - p.x, q.y - p.y);
}

/// Names of lines whose length, and of arcs whose radius is another than before.
std::string changedSizes(const SketchText& before, const SketchText& after) {
    std::string names;
    for (const SketchEntity& entity : before.sketch.entities)
        if ((entity.kind == EntityKind::line || entity.kind == EntityKind::arc) &&
            std::abs(sizeOf(before, entity.id) - sizeOf(after, entity.id)) > 1e-7)
            names += (names.empty() ? "" : " ") + entity.id;
    return names;
}

/// A dimension that is drawn anew gets its value.
bool give(SketchText& sketch, const std::string& dimension, double measured, double value) {
    sketch.sketch.takeReference();
    sketch.add(dimension + " = " + std::to_string(measured));
    const int number = static_cast<int>(sketch.sketch.constraints.size()) - 1;
    sketch.sketch.constraints.back().value = measured;
    return solve(sketch.sketch, {.values = {{number, value}}, .keepsShapes = true}).isSolved();
}

bool hold(SketchText& sketch, const std::string& constraint) {
    sketch.sketch.takeReference();
    sketch.add(constraint);
    const int number = static_cast<int>(sketch.sketch.constraints.size()) - 1;
    return solve(sketch.sketch, {.added = {number}, .keepsShapes = true}).isSolved();
}

}  // namespace

TEST(FewestSizes, ShortensOneLineThatComesNearACorner) {
    for (const double value : {40.0, 10.0, 5.0}) {
        SketchText sketch = bracket();
        ASSERT_TRUE(give(sketch, "distance base.end rib.end", std::hypot(40.0, 55.0), value)) << value;
        EXPECT_EQ(changedSizes(bracket(), sketch), "rib") << value;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << value;
    }
}

TEST(FewestSizes, MovesALineToACornerWithoutChangingAny) {
    SketchText sketch = bracket();
    ASSERT_TRUE(give(sketch, "distance base.end rib.end", std::hypot(40.0, 55.0), 60.0));
    EXPECT_EQ(changedSizes(bracket(), sketch), "");
}

TEST(FewestSizes, ShortensTheTopInsteadOfTurningTheChamferOver) {
    SketchText sketch = bracket();
    ASSERT_TRUE(give(sketch, "distance base", 80.0, 40.0));
    EXPECT_EQ(changedSizes(bracket(), sketch), "base top");
    EXPECT_NEAR(sketch.at("top.end").x, 20.0, 1e-7);
    EXPECT_NEAR(sketch.at("top.end").y, 40.0, 1e-7);
}

TEST(FewestSizes, GrowsOneLineWhereARadiusShrinks) {
    SketchText sketch = bracket();
    ASSERT_TRUE(give(sketch, "diameter round", 20.0, 5.0));
    EXPECT_EQ(changedSizes(bracket(), sketch).find("right"), std::string::npos);
    const std::string changed = changedSizes(bracket(), sketch);
    EXPECT_EQ(std::count(changed.begin(), changed.end(), ' '), 1) << changed;
}

TEST(FewestSizes, ChangesTheSweepOfAnArcInsteadOfLengthsOnItsOtherSide) {
    const SketchText before(
        "fixed! point o 0,0; fixed! point mark 50,30; arc round 0,0 10 90 270; line upper 0,10 50,10; "
        "line side 50,10 50,30; line lower 0,-10 50,-10; coincident round.centre o; radius round = 10; "
        "coincident round.start upper.start; coincident upper.end side.start; coincident side.end mark; "
        "vertical side; coincident round.end lower.start; tangent upper round; tangent lower round; "
        "distance_x o lower.end = 50");
    SketchText sketch = before;
    ASSERT_TRUE(give(sketch, "distance_y o lower.end", -10.0, -14.0));
    EXPECT_EQ(changedSizes(before, sketch), "lower");
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

TEST(FewestSizes, ChangesSweepsInsteadOfRadii) {
    // Two arcs lead from a base into a ring; as the ring grows, they meet it elsewhere.
    const SketchText before(
        "fixed! xline axis 0,0 90; arc left -5.4,12.4107 2.16065 270 363.596 ; arc right 5.4,12.4107 2.16065 176.404 "
        "270; "
        "arc ring 0,12.75 3.25 356.404 543.596; circle hole 0,12.75 1.75; line base -5.4,10.25 5.4,10.25; "
        "coincident ring.end left.end; coincident ring.start right.start; tangent ring left; tangent right ring; "
        "concentric hole.centre ring.centre; diameter hole = 3.5; coincident base.start left.start; "
        "coincident base.end right.end; point_on_curve ring.centre axis; distance_y right.end ring.centre = 2.5");
    for (const double diameter : {5.2, 7.8, 9.75}) {
        SketchText sketch = before;
        ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
        const SketchText settled = sketch;
        ASSERT_TRUE(give(sketch, "diameter ring", 2.0 * sketch.value("ring", 2), diameter));
        EXPECT_EQ(changedSizes(settled, sketch), "ring") << diameter;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << diameter;
    }
}

TEST(FewestSizes, KeepsExactlyWhatHardlyHasToChange) {
    // The step of a key moves up on its ring: what holds it may slide round, and only its own height is asked for.
    SketchText sketch(
        "fixed! point o 0,0; arc rim 0,0 40 2.866 354.261; arc bore 0,0 35.5 0 353.531; line spoke 0,0 -35.5,0; "
        "line tip -35.5,0 -40,0; line top 39.95,2 52,2; line step 52,2 52,0; line low 52,0 35.5,0; "
        "line foot 35.2739,-4 39.7995,-4; coincident rim.centre o; concentric bore.centre rim.centre; "
        "coincident spoke.start rim.centre; point_on_curve spoke.end bore; horizontal spoke; "
        "coincident spoke.end tip.start; point_on_curve tip.end rim; horizontal tip; coincident top.end step.start; "
        "coincident step.end low.start; horizontal top; horizontal low; vertical step; coincident top.start rim.start; "
        "horizontal foot; coincident rim.end foot.end; coincident low.end bore.start; "
        "distance_y bore.end bore.start = 4; coincident foot.start bore.end");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    const SketchText settled = sketch;
    const double was = sizeOf(sketch, "step");
    ASSERT_TRUE(give(sketch, "distance_y step.end step.start", was, 3.0));
    const std::string changed = changedSizes(settled, sketch);
    EXPECT_EQ(std::count(changed.begin(), changed.end(), ' '), 1) << changed;
    EXPECT_NE(changed.find("step"), std::string::npos) << changed;
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

TEST(FewestSizes, KeepsALengthWhenALineIsStoodUpright) {
    const SketchText before(
        "point foot 7.5,0; point edge 7.5,6; circle hole 7.5,8.65 2.65; arc round 7.5,8.65 7.5 -0.00013 179.99987; "
        "line right 15,0 15,8.649983; line left 0,0 0,8.650017; line low 0,0 15,0; diameter hole = 5.3; "
        "point_on_curve edge hole; vertical right; distance_y right.start edge = 6; coincident low.start left.start; "
        "coincident low.end right.start; vertical left; symmetric left.start right.start foot; "
        "distance_x edge foot = 0; distance_x hole.centre edge = 0; concentric round.centre hole.centre; "
        "coincident round.end left.end; coincident round.start right.end; diameter round = 15");
    SketchText sketch = before;
    ASSERT_TRUE(hold(sketch, "vertical low"));
    EXPECT_EQ(changedSizes(before, sketch), "right low");
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

/// A change that is shared out alike would take more from the short line than there is of it.
TEST(FewestSizes, AreThoseOfWhatIsLongEnough) {
    for (const double length : {0.1, 0.01}) {
        SketchText sketch(
            "fixed! point o 0,0; line a 0,0 3,0; line b 3,0 3,-7; line c 3,-7 2.9,-7; arc d 2.9,-7.1 0.1 90 180;"
            "line e 2.8,-7.1 2.8,-8; coincident o a.start; coincident a.end b.start; coincident b.end c.start;"
            "tangent c.end d.start; tangent d.end e.start; horizontal a; vertical b; horizontal c; vertical e");
        sketch.move("c.end", {3 - length, -7});
        sketch.move("d.centre", {3 - length, -7.1});
        sketch.move("d.start", {3 - length, -7});
        sketch.move("d.end", {2.9 - length, -7.1});
        sketch.move("e.start", {2.9 - length, -7.1});
        sketch.move("e.end", {2.9 - length, -8});
        sketch.sketch.takeReference();
        const int end = sketch.valueOf("e.end");
        const SolveRequest request{
            .targets = {{end, 3.85 - length}, {end + 1, -8}}, .edited = {sketch.numbers["e"]}, .keepsShapes = true};
        EXPECT_EQ(solve(sketch.sketch, request).status, SolveStatus::solved) << length;
        EXPECT_NEAR(sketch.at("a.end").x, 3.95, 1e-9) << length;
        EXPECT_NEAR(sketch.at("c.end").x, 3.95 - length, 1e-9) << length;
    }
}

}  // namespace holdfast::solver::detail
