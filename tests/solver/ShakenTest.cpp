#include <gtest/gtest.h>

#include "Shaking.h"
#include "Sketch.h"

// Sketches of which every coordinate is off, by more than their smallest shapes are large.
namespace holdfast::solver::detail {

namespace {

constexpr double kHundredth = 0.01;
constexpr unsigned kSeeds = 40;

/// A plate of 100 by 60 with corners of radius 1, which are lost in the noise.
SketchText plate() {
    return SketchText(
        "fixed! point origin 0,0; line low 1,0 99,0; line right 100,1 100,59; line top 99,60 1,60; line left 0,59 0,1; "
        "arc a 99,1 1 270 360; arc b 99,59 1 0 90; arc c 1,59 1 90 180; arc d 1,1 1 180 270; "
        "horizontal low; vertical right; horizontal top; vertical left; "
        "tangent low.end a.start; tangent a.end right.start; tangent right.end b.start; tangent b.end top.start; "
        "tangent top.end c.start; tangent c.end left.start; tangent left.end d.start; tangent d.end low.start; "
        "radius a = 1; equal a b; equal b c; equal c d; "
        "distance_x left.end right.start = 100; distance_y low.start top.start = 60; "
        "distance_x origin left.end = 0; distance_y origin low.start = 0");
}

/// Three pins close together at the end of a rail: which is on which side of its neighbour says no coordinate any more,
/// but the distance of the outer two does.
SketchText pins() {
    return SketchText(
        "fixed! point origin 0,0; line rail 0,0 100,0; coincident origin rail.start; horizontal rail; "
        "distance rail = 100; point p 90,0; point q 90.5,0; point r 91,0; point_on_curve p rail; "
        "point_on_curve q rail; point_on_curve r rail; distance p q = 0.5; distance q r = 0.5; distance p r = 1; "
        "distance origin p = 90");
}

/// A narrow slot at the end of a long arm.
SketchText slot() {
    return SketchText(
        "fixed! point origin 0,0; arc top 120,1 0.8 0 180; arc low 120,-3 0.8 180 360; line left 119.2,1 119.2,-3; "
        "line right 120.8,-3 120.8,1; line arm 0,0 119.2,0; coincident origin arm.start; horizontal arm; "
        "point_on_curve arm.end left; tangent top.end left.start; tangent left.end low.start; "
        "tangent low.end right.start; tangent right.end top.start; equal top low; radius top = 0.8; "
        "vertical left; distance_y low.centre top.centre = 4; distance_x origin top.centre = 120; "
        "distance_y origin top.centre = 1");
}

void expectPutRight(SketchText (*make)()) {
    for (unsigned seed = 1; seed <= kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        SketchText sketch = make();
        ASSERT_LT(sketch.worstViolation(), 1e-6);
        shake(sketch.sketch, kHundredth, seed);
        ASSERT_GT(sketch.worstViolation(), 0.1);
        const SolveResult result = solve(sketch.sketch, {.keepsShapes = true});
        EXPECT_TRUE(result.isSolved()) << static_cast<int>(result.status) << " "
                                       << (result.degeneracy ? result.degeneracy->what : "") << " "
                                       << sketch.namesOf(result.conflicting);
        sketch.sketch.takeReference();
        EXPECT_LT(sketch.worstViolation(), 1e-7);
    }
}

}  // namespace

TEST(Shaken, PlatesGetTheirSmallCornersBack) {
    expectPutRight(plate);
}

TEST(Shaken, NeighboursGetTheirSidesBack) {
    expectPutRight(pins);
}

TEST(Shaken, NarrowSlotsOpenAgain) {
    expectPutRight(slot);
}

}  // namespace holdfast::solver::detail
