#include <gtest/gtest.h>

#include <array>
#include <string_view>

#include "solver/src/residuals/EquationShelf.h"
#include "tests/solver/Sketch.h"

// A hand that pulls asks for one place after another: equations that are kept from one to the next change no answer.

namespace holdfast::solver::detail {
namespace {

/// What is drawn, which entity is pulled at which of its places, and what else is asked for.
struct Pulled {
    std::string_view text, entity, place;
};

constexpr std::array<Pulled, 6> kPulled{{
    {"line a 0,0 10,0; line b 10,0 10,8; line c 10,8 0,8; line d 0,8 0,0; coincident a.end b.start; "
     "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; horizontal a; vertical b; "
     "horizontal c; vertical d",
     "a", "a.start"},
    // Which way the curves touch, and at which parameter, is looked up where they are now.
    {"line a 0,0 10,0; arc b 10,3 3 -90 90; line c 10,6 0,6; coincident a.end b.start; coincident b.end c.start; "
     "tangent a b; tangent b c; horizontal a",
     "c", "c.end"},
    {"spline s 3 0,0 3,4 7,4 10,0; line l 10,0 14,-4; point p 5,3; coincident s.end l.start; tangent s.end l.start; "
     "point_on_curve p s",
     "l", "l.end"},
    {"fixed! line a 0,0 20,0; circle c 5,3 3; circle e 12,2 2; tangent a c; tangent a e; line b 5,3 12,2; "
     "coincident b.start c.centre; coincident b.end e.centre; distance b.start b.end = 7.0710678118654755",
     "e", "e.centre"},
    {"ellipse e 0,0 8,0 0.5; line l 0,4 10,4; tangent e l; horizontal l", "l", "l.end"},
    {"polyline y 0,0 6,0:0.5 6,4 0,4 closed; line l 6,4 12,6; coincident y.segment:1.end l.start", "l", "l.end"},
}};

SolveResult pull(SketchText& drawn, const Pulled& pulled, Vec2 by, EquationShelf* shelf) {
    const int value = drawn.valueOf(pulled.place);
    const Vec2 from = drawn.at(pulled.place);
    const std::vector<Target> targets{{value, from.x + by.x}, {value + 1, from.y + by.y}};
    return solve(drawn.sketch, {.targets = targets,
                                .edited = {drawn.numbers.at(std::string(pulled.entity))},
                                .keepsShapes = true,
                                .shelf = shelf});
}

TEST(EquationShelf, ChangesNoAnswerToTheLastBit) {
    int solved = 0;
    for (const Pulled& pulled : kPulled) {
        SketchText drawn(pulled.text);
        const std::vector<double> start = drawn.sketch.values;
        EquationShelf shelf;
        for (int i = 0; i < 12; ++i) {
            const Vec2 by{0.3 * (i % 5) - 0.1 * i, 0.2 * (i % 3) - 0.05 * i};
            drawn.sketch.values = start;
            const SolveResult alone = pull(drawn, pulled, by, nullptr);
            const std::vector<double> values = drawn.sketch.values;
            drawn.sketch.values = start;
            const SolveResult kept = pull(drawn, pulled, by, &shelf);
            EXPECT_EQ(kept.status, alone.status) << pulled.text << i;
            EXPECT_EQ(kept.iterations, alone.iterations) << pulled.text << i;
            EXPECT_EQ(drawn.sketch.values, values) << pulled.text << i;
            solved += alone.status == SolveStatus::solved ? 1 : 0;
        }
    }
    EXPECT_GT(solved, 50);
}

TEST(EquationShelf, ForgetsWhatWasAskedForBefore) {
    SketchText drawn("line a 0,0 10,0; horizontal a; distance a = 10");
    const Pulled pulled{"", "a", "a.end"};
    const std::vector<double> start = drawn.sketch.values;
    EquationShelf shelf;
    EXPECT_TRUE(pull(drawn, pulled, {1.0, 2.0}, &shelf).isSolved());
    EXPECT_NEAR(drawn.value("a", 0), 1.0, 1e-9);
    drawn.sketch.values = start;
    drawn.sketch.constraints[1].value = 12.0;
    EXPECT_TRUE(pull(drawn, pulled, {1.0, 2.0}, &shelf).isSolved());
    EXPECT_NEAR(drawn.value("a", 0), -1.0, 1e-9);
    drawn.sketch.values = start;
    drawn.sketch.constraints[0].active = drawn.sketch.constraints[1].active = false;
    EXPECT_TRUE(pull(drawn, pulled, {1.0, 2.0}, &shelf).isSolved());
    EXPECT_NE(drawn.value("a", 1), 2.0);
}

TEST(EquationShelf, GivesTheEquationsOfWhereEntitiesStoodNow) {
    SketchText drawn("fixed! line a 0,0 20,0; line b 0,0 4,3; coincident b.start a.start");
    const std::vector<int> constraints = bindingConstraints(drawn.sketch);
    EquationShelf shelf;
    shelf.giveBack(shelf.take(drawn.sketch, constraints, {}));
    drawn.move("b.end", {5.0, 7.0});
    const EquationShelf::Taken moved = shelf.take(drawn.sketch, constraints, {});
    EXPECT_EQ(moved.system.values, buildSystem(drawn.sketch, constraints).values);
    // Two at once are two.
    EXPECT_EQ(shelf.take(drawn.sketch, constraints, {}).system.links.size(), moved.system.links.size());
    drawn.move("a.start", {1.0, 0.0});
    EXPECT_EQ(shelf.take(drawn.sketch, constraints, {}).system.links[0].offset, 1.0);
}

}  // namespace
}  // namespace holdfast::solver::detail
