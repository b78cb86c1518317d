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

}  // namespace holdfast::solver::detail
