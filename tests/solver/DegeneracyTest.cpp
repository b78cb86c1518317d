#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/Sketch.h"

// Solutions that fulfil every equation by ruining an element are refused, and the sketch stays as it was.

namespace holdfast::solver::detail {
namespace {

void expectRefused(SketchText sketch, const SolveRequest& request, const char* why) {
    const std::vector<double> before = sketch.sketch.values;
    const SolveResult result = solve(sketch.sketch, request);
    EXPECT_EQ(result.status, SolveStatus::degenerate);
    ASSERT_TRUE(result.degeneracy.has_value());
    EXPECT_EQ(result.degeneracy->what, why);
    EXPECT_EQ(sketch.sketch.values, before);
}

SolveRequest pulling(const SketchText& sketch, std::string_view place, Vec2 to) {
    const int v = sketch.valueOf(place);
    SolveRequest request;
    request.targets = {{v, to.x}, {v + 1, to.y}};
    return request;
}

TEST(Degenerate, RefusesACircleOfNoRadius) {
    expectRefused(SketchText("circle c 0,0 3; fixed! point o 0,0; coincident c.centre o; point p 3,0; coincident p o;"
                             "point_on_curve p c"),
                  {}, "circle c would have no radius");
}

TEST(Degenerate, RefusesALineThatConstantsPullTogether) {
    expectRefused(SketchText("fixed! point o 0,0; line a 0,0 4,0; line b 4,0 2,3; coincident a.end b.start;"
                             "coincident a.start o; coincident b.start o"),
                  {}, "line a would have no length");
}

TEST(Degenerate, RefusesAPolylineSegmentOfNoLength) {
    SketchText sketch("polyline p 0,0 4,0 4,4");
    const int v = sketch.sketch.vertexValue(sketch.numbers["p"], 1);
    SolveRequest request;
    request.targets = {{v, 0.0}, {v + 1, 0.0}};
    expectRefused(sketch, request, "polyline p would have a segment of no length");
}

TEST(Degenerate, RefusesABulgeThatTurnsOver) {
    SketchText sketch("polyline p 0,0:0.5 4,0 4,4");
    const int number = sketch.numbers["p"];
    SolveRequest request;
    request.targets = {{sketch.sketch.entities[static_cast<std::size_t>(number)].bulgeValues.front(), -0.5}};
    expectRefused(sketch, request, "polyline p would turn inside out");
}

TEST(Degenerate, RefusesAnEllipticalArcTurnedInsideOut) {
    SketchText sketch("ellipse_arc e 0,0 6,0 0.5 0 80; fixed e.centre; fixed! point p 6,0; coincident e.start p");
    SolveRequest request = pulling(sketch, "e.end", {6 * std::cos(-0.3), 3 * std::sin(-0.3)});
    expectRefused(sketch, request, "elliptical arc e would turn inside out");
}

TEST(Degenerate, RefusesAnEllipseWhoseMinorAxisBecomesTheLongerOne) {
    SketchText sketch("ellipse e 0,0 6,0 0.5; fixed! point p 0,7; point_on_curve p e; fixed e.centre");
    SolveRequest request;
    const int first = sketch.sketch.entities[static_cast<std::size_t>(sketch.numbers["e"])].firstValue;
    request.targets = {{first + 2, 6.0}, {first + 3, 0.0}};
    expectRefused(sketch, request, "ellipse e would have a minor axis longer than its major one");
}

TEST(Degenerate, LetsTheAxesOfAnEllipseBecomeEqual) {
    SketchText sketch("ellipse e 0,0 6,0 0.5");
    SolveRequest request;
    request.targets = {{sketch.sketch.entities.front().firstValue + 4, 6.0}};
    EXPECT_EQ(solve(sketch.sketch, request).status, SolveStatus::solved);
}

TEST(Degenerate, RefusesASplineDrawnIntoOnePoint) {
    SketchText sketch("spline s 2 0,0 4,4 8,0");
    const int first = sketch.sketch.entities.front().firstValue;
    SolveRequest request;
    for (int v = first; v < first + 6; ++v)
        request.targets.push_back({v, 1.0});
    expectRefused(sketch, request, "spline s would have no length");
}

TEST(Degenerate, RefusesATangencyThatConstantsTurnOver) {
    for (const double end : {1.0, -1.0}) {
        SketchText sketch(
            "fixed! point o 0,0; line a 0,0 3,0; arc r 0,1 1 180 270; tangent a.start r.end; horizontal a; "
            "radius r = 1; coincident o r.end; distance_x o a.end = 3");
        sketch.sketch.constraints.back().value = end;
        const SolveResult result = solve(sketch.sketch, {.keepsShapes = true});
        EXPECT_EQ(result.isSolved(), end > 0.0) << end;
    }
}

/// A rectangle, of which a single side is free to turn.
SketchText rectangle() {
    return SketchText(
        "line a 0,0 10,0; line b 10,0 10,9; line c 10,9 0,9; line d 0,9 0,0; coincident a.end b.start;"
        "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; horizontal a; horizontal c;"
        "vertical d");
}

SolveRequest placing(const SketchText& sketch, std::string_view line, Vec2 start, Vec2 end) {
    SolveRequest request = pulling(sketch, std::string(line) + ".start", start);
    const SolveRequest other = pulling(sketch, std::string(line) + ".end", end);
    request.targets.insert(request.targets.end(), other.targets.begin(), other.targets.end());
    request.edited = {sketch.numbers.at(std::string(line))};
    return request;
}

TEST(Degenerate, RefusesALineThatAnEditOfAnotherFlattens) {
    const SketchText sketch = rectangle();
    for (const bool keepsShapes : {false, true}) {
        SolveRequest request = placing(sketch, "b", {10, 0}, {1, 0.05});
        request.keepsShapes = keepsShapes;
        expectRefused(sketch, request, "line d would shrink to next to nothing");
    }
}

TEST(Degenerate, RefusesAnArcThatAnEditOfAnotherLeavesNoSweep) {
    const SketchText sketch(
        "arc r 0,0 5 0 90; fixed r.centre; fixed r.end; line a 5,0 9,0; coincident a.start r.start");
    const double angle = 1.56;
    const Vec2 near{5 * std::cos(angle), 5 * std::sin(angle)};
    expectRefused(sketch, placing(sketch, "a", near, {near.x + 4, near.y}), "arc r would shrink to next to nothing");
}

TEST(Degenerate, LetsAnotherLineShrinkAsFarAsTheEditedOne) {
    for (const double left : {0.5, 0.05, 0.0005}) {
        SketchText sketch = rectangle();
        SolveRequest request = placing(sketch, "b", {10, 0}, {10, left});
        request.keepsShapes = true;
        EXPECT_EQ(solve(sketch.sketch, request).status, SolveStatus::solved) << left;
        EXPECT_NEAR(sketch.at("d.start").y - sketch.at("d.end").y, left, 1e-9);
    }
}

TEST(Degenerate, LetsALineShrinkAsFarAsTheOneThatItIsEqualTo) {
    SketchText sketch("fixed! point o 0,0; line a 0,0 10,0; coincident a.start o; line b 0,5 10,5; equal a b");
    SolveRequest request = placing(sketch, "a", {0, 0}, {0.04, 0});
    request.keepsShapes = true;
    EXPECT_EQ(solve(sketch.sketch, request).status, SolveStatus::solved);
    EXPECT_NEAR(sketch.at("b.end").x - sketch.at("b.start").x, 0.04, 1e-9);
}

TEST(Degenerate, LetsAnElementStayThatWasCollapsedBefore) {
    SketchText sketch("line a 5,5 5,5; line b 0,0 4,1; horizontal b");
    EXPECT_EQ(solve(sketch.sketch, {}).status, SolveStatus::solved);
    EXPECT_LT(sketch.worstViolation(), 1e-12);
}

}  // namespace
}  // namespace holdfast::solver::detail
