#include "solver/src/solving/Solve.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

void expectAt(const SketchText& sketch, std::string_view place, Vec2 expected, double tolerance = 1e-9) {
    EXPECT_NEAR(sketch.at(place).x, expected.x, tolerance) << place;
    EXPECT_NEAR(sketch.at(place).y, expected.y, tolerance) << place;
}

SolveRequest moving(const SketchText& sketch, std::string_view place, Vec2 to) {
    const int v = sketch.valueOf(place);
    SolveRequest request;
    request.targets = {{v, to.x}, {v + 1, to.y}};
    return request;
}

TEST(Solve, LeavesAFigureThatHoldsAloneToTheLastBit) {
    SketchText sketch(
        "line a 0.1,0.2 10.3,0.2; line b 10.3,0.2 10.3,7.7; coincident a.end b.start; horizontal a; vertical b");
    const std::vector<double> before = sketch.sketch.values;
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::unchanged);
    EXPECT_EQ(sketch.sketch.values, before);
    EXPECT_THAT(result.movements, IsEmpty());
}

TEST(Solve, MeetsHalfWayWhenNothingElseDecides) {
    SketchText sketch("point p 0,0; point q 4,2; coincident p q");
    solve(sketch.sketch, {});
    expectAt(sketch, "p", {2, 1});
    expectAt(sketch, "q", {2, 1});
}

TEST(Solve, MeetsAtTheMeanToTheLastBitWhereNoEquationIsLeft) {
    SketchText sketch(
        "line a 0,0.1 10,0.4; line b 20,0.7 30,0.2; horizontal a; horizontal b; coincident a.end b.start");
    EXPECT_EQ(solve(sketch.sketch, {}).status, SolveStatus::solved);
    EXPECT_EQ(sketch.at("a.start").y, (0.1 + 0.4 + 0.7 + 0.2) / 4);
    EXPECT_EQ(sketch.at("a.end").x, 15.0);
    EXPECT_EQ(sketch.at("b.start").x, 15.0);
}

TEST(Solve, MovesAPointOntoALineByTheShortestWay) {
    SketchText sketch("point p 3,4; fixed! line a 0,0 10,0; point_on_curve p a");
    solve(sketch.sketch, {});
    expectAt(sketch, "p", {3, 0});
}

TEST(Solve, KeepsTheSideOfADistance) {
    SketchText sketch("point p 3,-4; fixed! line a 0,0 10,1; distance p a = 2");
    solve(sketch.sketch, {});
    EXPECT_LT(sketch.at("p").y, 0.0);
    EXPECT_NEAR((10 * sketch.at("p").y - sketch.at("p").x) / std::sqrt(101.0), -2.0, 1e-9);
}

TEST(Solve, LetsAFixedLineSlideAlongItself) {
    SketchText sketch("line a 0,0 10,5; fixed a");
    const SolveResult along = solve(sketch.sketch, moving(sketch, "a.end", {14, 7}));
    EXPECT_TRUE(along.isSolved());
    expectAt(sketch, "a.start", {0, 0});
    expectAt(sketch, "a.end", {14, 7});
    const SolveResult across = solve(sketch.sketch, moving(sketch, "a.end", {14, 8}));
    EXPECT_EQ(across.status, SolveStatus::conflicting);
    EXPECT_EQ(sketch.namesOf(across.conflicting), "c0");
}

TEST(Solve, CarriesNeighboursAlongWithAnEdit) {
    SketchText sketch(
        "line a 0,0 10,0; line b 10,0 10,5; line c 10,5 0,5; coincident a.end b.start;"
        "coincident b.end c.start; horizontal a; vertical b; horizontal c");
    const SolveResult result = solve(sketch.sketch, moving(sketch, "b.end", {12, 6}));
    EXPECT_TRUE(result.isSolved());
    expectAt(sketch, "a.start", {0, 0});
    expectAt(sketch, "a.end", {12, 0});
    expectAt(sketch, "c.start", {12, 6});
    expectAt(sketch, "c.end", {0, 6});
}

TEST(Solve, DoesNotTouchWhatIsNotConnected) {
    SketchText sketch(
        "line a 0,0 10,0; line b 10,0 10,5; coincident a.end b.start; line u 1.1,2.2 3.3,4.4;"
        "line v 3.3,4.4 5.5,0.7; coincident u.end v.start; distance u = 3.111269837220809");
    const std::vector<double> before = sketch.sketch.values;
    solve(sketch.sketch, moving(sketch, "a.end", {11, 1}));
    for (const char* id : {"u", "v"}) {
        for (int i = 0; i < 4; ++i) {
            const auto v = static_cast<std::size_t>(
                sketch.sketch.entities[static_cast<std::size_t>(sketch.numbers[id])].firstValue + i);
            EXPECT_EQ(std::bit_cast<std::uint64_t>(sketch.sketch.values[v]), std::bit_cast<std::uint64_t>(before[v]));
        }
    }
}

TEST(Solve, SaysWhatMovedAndHowFar) {
    SketchText sketch("line a 0,0 10,0; line b 10,0 10,5; line far 50,50 60,60; coincident a.end b.start");
    const SolveResult result = solve(sketch.sketch, moving(sketch, "a.end", {13, 4}));
    ASSERT_EQ(result.movements.size(), 2u);
    EXPECT_EQ(result.movements[0].entity, sketch.numbers["a"]);
    EXPECT_EQ(result.movements[1].entity, sketch.numbers["b"]);
    EXPECT_NEAR(result.movements[0].distance, 4.0, 1.0 + 1e-9);
}

TEST(Solve, MovesFewElementsWithRingsAndLittleWithTheWholePart) {
    constexpr const char* chain =
        "line a 0,0 8,6; line b 8,6 16,0; line c 16,0 24,6; line d 24,6 32,0; line e 32,0 40,6; line f 40,6 48,0;"
        "coincident a.end b.start; coincident b.end c.start; coincident c.end d.start;"
        "coincident d.end e.start; distance a = 10; distance b = 10; distance c = 10;"
        "coincident e.end f.start; distance d = 10; distance e = 10; distance f = 10";
    SketchText rings(chain), part(chain);
    SolveRequest request = moving(rings, "a.start", {0, 3});
    const SolveResult few = solve(rings.sketch, request);
    request.reach = Scope::part;
    const SolveResult all = solve(part.sketch, request);
    EXPECT_LT(few.movements.size(), all.movements.size());
    EXPECT_LT(part.worstViolation(), 1e-9);
    EXPECT_LT(rings.worstViolation(), 1e-9);
}

TEST(Solve, IgnoresConstraintsThatAreOffOrMeasured) {
    SketchText sketch("point p 0,0; point q 4,2; off coincident p q; measured distance p q = 100");
    EXPECT_EQ(solve(sketch.sketch, {}).status, SolveStatus::unchanged);
    expectAt(sketch, "q", {4, 2});
}

TEST(Solve, LivesWithRedundantConstraints) {
    SketchText sketch(
        "line a 0,0 10,1; line b 10,0 10,7; line c 10,7 1,7; line d 0,7 0,1; coincident a.end b.start;"
        "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; horizontal a; vertical b;"
        "horizontal c; vertical d; parallel a c; perpendicular a b; equal a c; equal b d; parallel b d");
    EXPECT_EQ(solve(sketch.sketch, {}).status, SolveStatus::solved);
    EXPECT_LT(sketch.worstViolation(), 1e-10);
}

TEST(Solve, RefusesAnEditThatConstraintsForbidAndNamesThem) {
    SketchText sketch(
        "fixed! point o 0,0; line a 0,0 5,0; coincident a.start o; distance a = 5; line b 5,0 9,9;"
        "coincident a.end b.start");
    const std::vector<double> before = sketch.sketch.values;
    const SolveResult result = solve(sketch.sketch, moving(sketch, "a.end", {6, 0}));
    EXPECT_EQ(result.status, SolveStatus::conflicting);
    EXPECT_EQ(sketch.namesOf(result.conflicting), "c0 c1");
    EXPECT_THAT(result.contradictedTargets, ElementsAre(0));
    EXPECT_EQ(sketch.sketch.values, before);
}

TEST(Solve, NamesOnlyTheConstraintsInConflict) {
    SketchText sketch(
        "fixed! point o 0,0; fixed! point e 10,4; line a 0,0 10,0; line b 0,20 9,21; coincident a.start o;"
        "horizontal b; coincident a.end e; horizontal a; distance b = 7");
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::conflicting);
    EXPECT_EQ(sketch.namesOf(result.conflicting), "c0 c2 c3");
}

TEST(Solve, NamesATriangleThatCannotClose) {
    SketchText sketch(
        "point p 0,0; point q 10,0; point r 5,5; distance p q = 10; distance q r = 3; distance r p = 4;"
        "horizontal p q");
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::conflicting);
    EXPECT_EQ(sketch.namesOf(result.conflicting), "c0 c1 c2");
}

TEST(Solve, NamesEqualLengthsAskedOfFixedLines) {
    SketchText sketch("fixed! line a 0,0 10,0; fixed! line b 0,5 6,5; equal a b");
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::conflicting);
    EXPECT_EQ(sketch.namesOf(result.conflicting), "c0");
}

TEST(Solve, RefusesToCollapseALine) {
    SketchText sketch("line a 0,0 4,0; horizontal a; vertical a");
    const std::vector<double> before = sketch.sketch.values;
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::degenerate);
    ASSERT_TRUE(result.degeneracy.has_value());
    EXPECT_EQ(result.degeneracy->what, "line a would have no length");
    EXPECT_EQ(sketch.sketch.values, before);
}

TEST(Solve, DoesNotTurnAnArcInsideOut) {
    SketchText sketch("arc k 0,0 5 0 80; fixed! point p 5,0; coincident k.start p; fixed k.centre");
    const SolveResult result = solve(sketch.sketch, moving(sketch, "k.end", {5 * std::cos(-0.3), 5 * std::sin(-0.3)}));
    EXPECT_EQ(result.status, SolveStatus::degenerate);
    ASSERT_TRUE(result.degeneracy.has_value());
    EXPECT_EQ(result.degeneracy->what, "arc k would turn inside out");
}

TEST(Solve, DoesNotTurnATangencyOver) {
    SketchText sketch("fixed! line a -9,0 0,0; arc k 0,3 3 270 350; tangent a.end k.start; radius k = 3");
    // The arc's centre on the other side would make the curves run against each other.
    const SolveResult result = solve(sketch.sketch, moving(sketch, "k.centre", {0, -3}));
    EXPECT_FALSE(result.isSolved());
    expectAt(sketch, "k.centre", {0, 3});
}

TEST(Solve, KeepsTheCarrierOfAnEditedElementBeforeItsNeighbours) {
    SketchText sketch("line a 0,0 10,0; line b 10,0 10,5; coincident a.end b.start; equal a b");
    SolveRequest request = moving(sketch, "a.end", {12, 0});
    request.edited = {sketch.numbers["a"]};
    ASSERT_TRUE(solve(sketch.sketch, request).isSolved());
    EXPECT_LT(distance(sketch.at("a.start"), {0, 0}), 0.1);
    EXPECT_NEAR(distance(sketch.at("b.start"), sketch.at("b.end")), distance(sketch.at("a.start"), sketch.at("a.end")),
                1e-9);
}

TEST(Solve, FallsBackToTurningAnElementWhoseExactPlaceIsForbidden) {
    SketchText sketch("line a 0,0 10,0; horizontal a");
    const int v = sketch.valueOf("a.start");
    SolveRequest request;  // a quarter turn about the start, which `horizontal` forbids
    request.targets = {{v, 0}, {v + 1, 0}, {v + 2, 0}, {v + 3, 10}};
    request.edited = {sketch.numbers["a"]};
    request.lastLevel = RelaxationLevel::wishes;
    const SolveResult result = solve(sketch.sketch, request);
    EXPECT_EQ(result.status, SolveStatus::solved);
    EXPECT_EQ(result.level, RelaxationLevel::sizes);
    expectAt(sketch, "a.start", {-5, 5}, 1e-6);
    expectAt(sketch, "a.end", {5, 5}, 1e-6);
}

TEST(Solve, GivesUpSizesLast) {
    SketchText sketch(
        "line a 0,0 10,0; fixed! xline x 0,0 90; fixed! xline y 10,0 90; point_on_curve a.start x;"
        "point_on_curve a.end y; horizontal a");
    const int v = sketch.valueOf("a.start");
    SolveRequest request;  // twice as long, which nothing but the two axes forbids
    request.targets = {{v + 1, 3}, {v + 2, 20}, {v + 3, 3}};
    request.edited = {sketch.numbers["a"]};
    request.lastLevel = RelaxationLevel::wishes;
    const SolveResult result = solve(sketch.sketch, request);
    EXPECT_TRUE(result.isSolved());
    expectAt(sketch, "a.start", {0, 3}, 1e-6);
    expectAt(sketch, "a.end", {10, 3}, 1e-6);
}

TEST(Solve, TakesBranchesFromTheReferenceNotFromWhereThingsAre) {
    SketchText sketch("fixed! circle c 0,0 5; circle d 8,0 3; tangent c d");
    sketch.move("d.centre", {3, 0});  // now inside, but it was outside when the edit began
    solve(sketch.sketch, {});
    EXPECT_NEAR(distance(sketch.at("d.centre"), {0, 0}) - sketch.value("d", 2), 5.0, 1e-9);
}

TEST(Solve, FollowsTheReferenceWhenTheDirectWayLeadsToAnotherBranch) {
    SketchText sketch("fixed! point o 0,0; arc k 0,0 5 10 80; coincident k.centre o; radius k = 5");
    sketch.move("k.start", {-1, 5});  // dragged past its own end
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_TRUE(result.isSolved());
    EXPECT_LT(sketch.worstViolation(), 1e-9);
}

TEST(Solve, HoldsToASmallPartOfAnElementHoweverWideTheSketchIs) {
    std::string text = "fixed! point far 400000,400000; ";
    constexpr int count = 30;
    for (int i = 0; i < count; ++i) {
        const std::string n = std::to_string(i), last = std::to_string(i - 1);
        text += "line l" + n + " " + std::to_string(10 * ((i + 1) / 2)) + "," + std::to_string(10 * (i / 2)) + " " +
                std::to_string(10 * ((i + 2) / 2)) + "," + std::to_string(10 * ((i + 1) / 2)) + "; ";
        if (i > 0)
            text += "coincident l" + last + ".end l" + n + ".start; equal l" + last + " l" + n + "; perpendicular l" +
                    last + " l" + n + "; ";
    }
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SketchText sketch(text + "distance l0 = 10");
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> off(-1.0, 1.0);
        for (std::size_t v = 2; v < sketch.sketch.values.size(); ++v)
            sketch.sketch.values[v] += off(random);
        ASSERT_TRUE(solve(sketch.sketch, {.reach = Scope::part}).isSolved()) << seed;
        EXPECT_LE(sketch.worstViolation(), 1e-8) << seed;
    }
}

TEST(Solve, KeepsALineOnItsSideOfAnother) {
    for (const char* levels : {"", "; horizontal a; horizontal b"}) {
        SketchText sketch(std::string("fixed! line a 0,0 6,0; line b 0,-4 6,-4; parallel a b; distance a b = 3") +
                          levels);
        sketch.move("b.start", {0, 2});  // dragged across
        sketch.move("b.end", {6, 2});
        EXPECT_EQ(solve(sketch.sketch, {}).status, SolveStatus::solved);
        EXPECT_NEAR(sketch.at("b.start").y, -3.0, 1e-9) << levels;
        EXPECT_NEAR(sketch.at("b.end").y, -3.0, 1e-9) << levels;
    }
}

TEST(Solve, SaysThatAnEllipseHasNoGap) {
    SketchText sketch("line a 0,0 4,0; ellipse e 0,0 3,0 0.5; distance a e = 1");
    try {
        solve(sketch.sketch, {});
        FAIL() << "nobody complained";
    } catch (const SketchError& error) {
        EXPECT_STREQ(error.what(),
                     "constraint c0: distance of line a, ellipse e; distance takes one bounded line or arc, or two of "
                     "points, lines and circles");
    }
}

TEST(Solve, SaysWhatAConstraintCannotApplyTo) {
    SketchText sketch("line a 0,0 4,0; circle c 0,0 3; horizontal c");
    try {
        solve(sketch.sketch, {});
        FAIL() << "nobody complained";
    } catch (const SketchError& error) {
        EXPECT_STREQ(error.what(),
                     "constraint c0: horizontal of circle c; horizontal takes one whole line or text, or two points");
    }
}

}  // namespace
}  // namespace holdfast::solver::detail
