// Parts of a drawing that nothing connects: each is solved as if it were alone, whatever the others do and in however
// many threads.

#include "solver/src/solving/Parts.h"

#include <gmock/gmock.h>

#include <atomic>
#include <sstream>
#include <thread>

#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {
namespace {

/// A quadrilateral that is to become a square with a circle that touches two of its sides; names begin with its number.
std::string squareAt(int number, double x, double y, double side) {
    std::ostringstream text;
    const std::string n = "s" + std::to_string(number);
    const auto line = [&](const char* name, double x1, double y1, double x2, double y2) {
        text << "line " << n << name << ' ' << x + x1 << ',' << y + y1 << ' ' << x + x2 << ',' << y + y2 << "; ";
    };
    line("a", 0, 0.1, 10, -0.3);
    line("b", 10.2, 0, 9.8, 10);
    line("c", 10, 10.3, 0.2, 9.9);
    line("d", -0.2, 10, 0.1, 0);
    for (const auto& [from, to] : {std::pair("a", "b"), {"b", "c"}, {"c", "d"}, {"d", "a"}})
        text << "coincident " << n << from << ".end " << n << to << ".start; ";
    text << "circle " << n << "r " << x + 4 << ',' << y + 4.4 << " 4; tangent " << n << "r " << n << "a; tangent " << n
         << "r " << n << "d; horizontal " << n << "a; vertical " << n << "b; horizontal " << n << "c; vertical " << n
         << "d; distance " << n << "a = " << side << "; equal " << n << "a " << n << "b";
    return text.str();
}

std::string squares(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += (i == 0 ? "" : "; ") + squareAt(i, 40.0 * (i % 10), 40.0 * (i / 10), 10.0 + 0.07 * i);
    return text;
}

std::vector<double> solvedIn(int threads, const std::string& text) {
    SketchText sketch(text);
    const SolveResult result = solve(sketch.sketch, {.threads = threads});
    EXPECT_EQ(result.status, SolveStatus::solved);
    EXPECT_LE(sketch.worstViolation(), 1e-9 * sketch.sketch.size());
    return sketch.sketch.values;
}

TEST(Parts, AreTheSameToTheLastBitInAnyNumberOfThreads) {
    const std::string text = squares(60);
    const std::vector<double> one = solvedIn(1, text);
    EXPECT_EQ(solvedIn(2, text), one);
    EXPECT_EQ(solvedIn(7, text), one);
}

TEST(Parts, AreSolvedAsIfEachWereAlone) {
    SketchText alone(squareAt(0, 0, 0, 12) + "; line far 300,0 300,200"),
        both(squareAt(0, 0, 0, 12) + "; " + squareAt(1, 290, 100, 9));
    alone.sketch.sizeAround = both.sketch.sizeAround = 1000.0;
    ASSERT_TRUE(solve(alone.sketch, {}).isSolved());
    ASSERT_TRUE(solve(both.sketch, {}).isSolved());
    for (const char* place : {"s0a.start", "s0c.end", "s0r.centre"}) {
        EXPECT_EQ(alone.at(place).x, both.at(place).x) << place;
        EXPECT_EQ(alone.at(place).y, both.at(place).y) << place;
    }
}

TEST(Parts, ThatHoldAreLeftToTheLastBit) {
    SketchText sketch(squareAt(0, 0, 0, 12) +
                      "; line h 1.1,50.7 9.3,50.7; horizontal h; line v 20.3,50 20.3,61; "
                      "vertical v; coincident h.start v.start");
    sketch.move("v.start", {1.1, 50.7});
    sketch.move("v.end", {1.1, 61});
    sketch.sketch.takeReference();
    const int h = sketch.valueOf("h.start");
    const std::vector<double> before(sketch.sketch.values.begin() + h, sketch.sketch.values.end());
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::solved);
    EXPECT_EQ(std::vector<double>(sketch.sketch.values.begin() + h, sketch.sketch.values.end()), before);
    ASSERT_FALSE(result.movements.empty());
    for (const Movement& movement : result.movements)
        EXPECT_LT(movement.entity, sketch.numbers.at("h"));
}

TEST(Parts, ThatAllHoldAreUnchangedHoweverManyThreadsThereAre) {
    SketchText sketch(squares(60));
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    sketch.sketch.takeReference();
    const std::vector<double> before = sketch.sketch.values;
    for (const int threads : {1, 2, 8})
        EXPECT_EQ(solve(sketch.sketch, {.threads = threads}).status, SolveStatus::unchanged);
    EXPECT_EQ(sketch.sketch.values, before);
}

TEST(Parts, OfWhichOneContradictsItselfAreAllAsBeforeAndItsConstraintsAreNamed) {
    for (const int threads : {1, 3}) {
        SketchText sketch(squares(20) +
                          "; line x 0,-50 30,-41; horizontal x; vertical x; distance x = 4; line y 0,-90 5,-90.2; "
                          "horizontal y");
        const std::vector<double> before = sketch.sketch.values;
        const SolveResult result = solve(sketch.sketch, {.threads = threads});
        EXPECT_EQ(result.status, SolveStatus::conflicting);
        EXPECT_TRUE(result.isConflictMinimal);
        for (const int c : result.conflicting)
            for (const SketchPlace& place : sketch.sketch.constraints[static_cast<std::size_t>(c)].refs)
                EXPECT_EQ(sketch.sketch.entities[static_cast<std::size_t>(place.entity)].id, "x");
        EXPECT_THAT(result.conflicting, ::testing::SizeIs(::testing::Ge(2U)));
        EXPECT_EQ(sketch.sketch.values, before);
    }
}

TEST(Parts, ThatShareAFixedEntityAreSolvedApart) {
    SketchText sketch(
        "fixed! line axis 0,0 100,0; circle c 10,6 5; tangent c axis; circle d 60,7 5; tangent d axis; "
        "radius d = 4");
    ASSERT_EQ(solve(sketch.sketch, {}).status, SolveStatus::solved);
    EXPECT_NEAR(sketch.at("d.centre").y, 4.0, 1e-9);
    EXPECT_EQ(sketch.at("axis.end").x, 100.0);
    EXPECT_LE(sketch.worstViolation(), 1e-8);
}

TEST(Parts, OfFixedEntitiesThatDoNotHoldAreToldAsBefore) {
    SketchText sketch(
        "fixed! line a 0,0 100,3; horizontal a; circle c 10,6 5; radius c = 4; line b 0,9 9,9.1; "
        "horizontal b");
    EXPECT_EQ(solve(sketch.sketch, {}).status, SolveStatus::conflicting);
}

TEST(Parts, TellTheWorstOfAllAndAddUpWhatTheyCost) {
    SketchText one(squareAt(0, 0, 0, 12)), two(squareAt(0, 0, 0, 12) + "; " + squareAt(1, 40, 0, 12));
    const SolveResult alone = solve(one.sketch, {}), both = solve(two.sketch, {});
    EXPECT_EQ(both.movements.size(), 2 * alone.movements.size());
    EXPECT_GT(both.iterations, alone.iterations);
    EXPECT_LE(both.residual, 1e-10 * two.sketch.size());
    EXPECT_TRUE(std::is_sorted(both.movements.begin(), both.movements.end(),
                               [](const Movement& a, const Movement& b) { return a.entity < b.entity; }));
}

TEST(Parts, AskTheThreadThatSolvesAloneWhetherToGoOn) {
    const std::thread::id here = std::this_thread::get_id();
    for (int most = 0; most < 30; ++most) {
        SketchText sketch(squares(60));
        const std::vector<double> before = sketch.sketch.values;
        std::atomic<bool> isElsewhere = false;
        int asked = 0;
        Budget budget(std::numeric_limits<int>::max(), Budget::Clock::time_point::max(), [&] {
            isElsewhere = isElsewhere || std::this_thread::get_id() != here;
            return ++asked > most;
        });
        const bool isSolved = solve(sketch.sketch, {.threads = 4, .budget = &budget}).isSolved();
        EXPECT_FALSE(isElsewhere);
        EXPECT_GT(asked, 0);
        // The other threads may have been done before it was asked often enough.
        EXPECT_EQ(budget.overrun(), isSolved ? Budget::Overrun::none : Budget::Overrun::cancelled);
        EXPECT_EQ(sketch.sketch.values != before, isSolved);
        EXPECT_TRUE(!isSolved || most > 0);
    }
}

TEST(Parts, EndWhenTimeIsUp) {
    SketchText sketch(squares(60));
    const std::vector<double> before = sketch.sketch.values;
    Budget budget(std::numeric_limits<int>::max(), Budget::Clock::now(), {});
    EXPECT_FALSE(solve(sketch.sketch, {.threads = 4, .budget = &budget}).isSolved());
    EXPECT_EQ(budget.overrun(), Budget::Overrun::time);
    EXPECT_EQ(sketch.sketch.values, before);
}

TEST(Parts, LetThroughWhatTheCallerThrowsAndAreAsBefore) {
    SketchText sketch(squares(60));
    const std::vector<double> before = sketch.sketch.values;
    Budget budget(std::numeric_limits<int>::max(), Budget::Clock::time_point::max(),
                  []() -> bool { throw std::runtime_error("enough"); });
    EXPECT_THROW(solve(sketch.sketch, {.threads = 4, .budget = &budget}), std::runtime_error);
    EXPECT_EQ(sketch.sketch.values, before);
}

}  // namespace
}  // namespace holdfast::solver::detail
