#include "solver/src/dragging/Drag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {
namespace {

SolveResult dragTo(DragSession& session, Vec2 goal) {
    const double goals[] = {goal.x, goal.y};
    return session.step(goals);
}

DragSession beginAt(SketchText& sketch, std::string_view place, Scope reach = Scope::rings) {
    const int v = sketch.valueOf(place);
    return DragSession(sketch.sketch, {v, v + 1}, reach);
}

/// A zigzag of links, each 8 across and 6 up or down.
std::string chainOfLinks(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        const std::string id = "l" + std::to_string(i);
        const char* from = i % 2 == 0 ? ",0 " : ",6 ";
        const char* to = i % 2 == 0 ? ",6; distance " : ",0; distance ";
        text += "line " + id + " " + std::to_string(8 * i) + from + std::to_string(8 * i + 8) + to + id + " = 10;";
        if (i > 0)
            text += "coincident l" + std::to_string(i - 1) + ".end " + id + ".start;";
    }
    return text;
}

/// A net of lines 10 long, side times side meshes; the two lines that begin in a node are equally long.
std::string netOfLines(int side) {
    const auto line = [](char kind, int i, int j) { return kind + std::to_string(i) + "x" + std::to_string(j); };
    std::string text;
    for (int j = 0; j < side; ++j) {
        for (int i = 0; i < side; ++i) {
            const std::string x = std::to_string(10 * i), y = std::to_string(10 * j), node = " " + x + "," + y + " ";
            const std::string right = line('r', i, j), up = line('u', i, j);
            text += "line " + right + node + std::to_string(10 * i + 10) + "," + y + ";";
            text += "line " + up + node + x + "," + std::to_string(10 * j + 10) + ";";
            text += "coincident " + right + ".start " + up + ".start; equal " + right + " " + up + ";";
            if (i > 0)
                text += "coincident " + line('r', i - 1, j) + ".end " + right + ".start;";
            if (j > 0)
                text += "coincident " + line('u', i, j - 1) + ".end " + right + ".start;";
        }
    }
    return text;
}

TEST(Drag, PutsAFreePointWhereItIsDragged) {
    SketchText sketch("line a 0,0 10,0");
    DragSession session = beginAt(sketch, "a.end");
    EXPECT_EQ(dragTo(session, {12, 7}).status, SolveStatus::solved);
    EXPECT_LT(distance(sketch.at("a.end"), {12, 7}), 1e-12);
    EXPECT_EQ(distance(sketch.at("a.start"), {0, 0}), 0.0);
}

TEST(Drag, KeepsEveryConstraintInEveryStep) {
    SketchText sketch(
        "line a 0,0 20,0; arc k 20,5 5 270 350; line b 24.924,4.132 26,10; tangent a.end k.start;"
        "tangent k.end b.start; horizontal a; radius k = 5; distance b = 7");
    ASSERT_TRUE(solve(sketch.sketch, {}).isSolved());
    const Vec2 start = sketch.at("b.end");
    DragSession session = beginAt(sketch, "b.end");
    for (int i = 1; i <= 40; ++i) {
        ASSERT_TRUE(dragTo(session, {start.x - 0.3 * i, start.y + 2 * std::sin(0.2 * i)}).isSolved()) << i;
        EXPECT_LT(sketch.worstViolation(), 1e-9) << i;
    }
}

TEST(Drag, ComesBackToWhereItBegan) {
    SketchText sketch(chainOfLinks(8));
    const std::vector<double> before = sketch.sketch.values;
    DragSession session = beginAt(sketch, "l7.end");
    for (const double x : {62.0, 56.0, 40.0, 50.0, 64.0})
        ASSERT_TRUE(dragTo(session, {x, x < 63.0 ? 20.0 : 0.0}).isSolved());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_NEAR(sketch.sketch.values[i], before[i], 1e-6);
}

TEST(Drag, TakesNoMoreIterationsFarFromWhereItBegan) {
    SketchText sketch(netOfLines(8));
    const Vec2 start = sketch.at("r4x4.start");
    DragSession session = beginAt(sketch, "r4x4.start", Scope::part);
    int most = 0;
    for (int i = 1; i <= 120; ++i) {
        const SolveResult result = dragTo(session, {start.x + 0.02 * i, start.y + 0.01 * i});
        ASSERT_TRUE(result.isSolved()) << i;
        if (i > 2)
            most = std::max(most, result.iterations);
    }
    EXPECT_LE(most, 2);
}

TEST(Drag, MovesOnlyTheNeighbourhoodThatTheDragNeeds) {
    SketchText sketch(chainOfLinks(200));
    DragSession session = beginAt(sketch, "l100.start");
    const SolveResult result = dragTo(session, {800, 3});
    ASSERT_TRUE(result.isSolved());
    EXPECT_LT(session.miss(), 1e-4);
    EXPECT_LT(result.movements.size(), 40u);
    EXPECT_EQ(sketch.value("l0", 0), 0.0);
    EXPECT_EQ(sketch.value("l199", 2), 1600.0);
}

TEST(Drag, DoesNotSpreadThroughARadiusThatManyShare) {
    std::string text = "circle c0 0,0 2; point p0 2,0; point_on_curve p0 c0;";
    for (int i = 1; i < 40; ++i) {
        const std::string n = std::to_string(i), x = std::to_string(10 * i);
        text += "circle c" + n + " " + x + ",0 2; point p" + n + " " + std::to_string(10 * i + 2) + ",0;";
        text += "point_on_curve p" + n + " c" + n + "; equal c" + n + " c0;";
    }
    SketchText sketch(text);
    DragSession session = beginAt(sketch, "p7");
    const SolveResult result = dragTo(session, {75, 1});
    ASSERT_TRUE(result.isSolved());
    EXPECT_LT(session.miss(), 1e-5);
    EXPECT_EQ(result.movements.size(), 2u);
    EXPECT_EQ(sketch.value("c20", 2), 2.0);
}

TEST(Drag, OpensASharedRadiusWhenNothingElseHelps) {
    std::string text =
        "fixed! point o 0,0; circle c0 0,0 2; coincident c0.centre o; point p0 2,0; point_on_curve p0 c0;";
    for (int i = 1; i < 40; ++i) {
        const std::string n = std::to_string(i);
        text += "circle c" + n + " " + std::to_string(10 * i) + ",0 2; equal c" + n + " c0;";
        text += "point p" + n + " " + std::to_string(10 * i + 2) + ",0; point_on_curve p" + n + " c" + n + ";";
    }
    SketchText sketch(text);
    DragSession session = beginAt(sketch, "p0");
    ASSERT_TRUE(dragTo(session, {3, 0}).isSolved());
    EXPECT_LT(session.miss(), 1e-5);
    EXPECT_NEAR(sketch.value("c20", 2), 3.0, 1e-5);
}

TEST(Drag, ReachesFartherWhenTheNeighbourhoodDoesNotSuffice) {
    SketchText sketch(chainOfLinks(40));
    DragSession session = beginAt(sketch, "l39.end");
    const int narrow = session.freedom();
    ASSERT_TRUE(dragTo(session, {290, 120}).isSolved());
    EXPECT_LT(session.miss(), 1e-3);
    EXPECT_GT(session.freedom(), narrow);
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

/// Two links of 10 on a pin, folded at the knee.
constexpr const char* kFoldedArm =
    "fixed! point o 0,0; line a 0,0 8,6; line b 8,6 16,0; coincident a.start o; coincident a.end b.start;"
    "distance a = 10; distance b = 10";

/// A rectangle of fixed size, free to shift and turn, drawn by its corners counter-clockwise from 0,0.
constexpr const char* kRigidRectangle =
    "line a 0,0 30,0; line b 30,0 30,10; line c 30,10 0,10; line d 0,10 0,0; coincident a.end b.start;"
    "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; distance a = 30; distance b = 10;"
    "distance c = 30; distance d = 10; perpendicular a b";

/// A strip of square cells with diagonals: no two points of it can come nearer or go farther.
std::string rigidTruss(int cells) {
    std::string text;
    const auto line = [&](const std::string& id, int x1, int y1, int x2, int y2) {
        const double length = std::hypot(x2 - x1, y2 - y1);
        std::ostringstream statement;
        statement.precision(17);
        statement << "line " << id << " " << x1 << "," << y1 << " " << x2 << "," << y2 << "; distance " << id << " = "
                  << length << ";";
        text += statement.str();
    };
    for (int i = 0; i < cells; ++i) {
        const std::string n = std::to_string(i), last = std::to_string(i - 1);
        const int x = 10 * i;
        line("s" + n, x, 0, x, 10);
        line("l" + n, x, 0, x + 10, 0);
        line("u" + n, x, 10, x + 10, 10);
        line("d" + n, x, 0, x + 10, 10);
        text += "coincident l" + n + ".start s" + n + ".start; coincident d" + n + ".start s" + n + ".start;";
        text += "coincident u" + n + ".start s" + n + ".end; coincident d" + n + ".end u" + n + ".end;";
        if (i > 0)
            text += "coincident l" + last + ".end s" + n + ".start; coincident u" + last + ".end s" + n + ".end;";
    }
    return text;
}

void expectTakenAlong(SketchText sketch, std::string_view place, Scope reach, double step) {
    const Vec2 start = sketch.at(place);
    DragSession session = beginAt(sketch, place, reach);
    for (int i = 1; i <= 20; ++i) {
        const Vec2 goal{start.x + step * i, start.y + 0.5 * step * i};
        ASSERT_TRUE(dragTo(session, goal).isSolved()) << i;
        EXPECT_LT(distance(sketch.at(place), goal), 1e-6 * sketch.sketch.size()) << i;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << i;
    }
}

TEST(Drag, TakesARigidFigureAlongAsAWhole) {
    for (const Scope reach : {Scope::rings, Scope::part}) {
        for (const double step : {0.1, 3.0, 50.0}) {
            expectTakenAlong(SketchText(kRigidRectangle), "b.end", reach, step);
            expectTakenAlong(SketchText(rigidTruss(9)), "u8.end", reach, step);
            expectTakenAlong(SketchText(rigidTruss(9)), "l4.start", reach, step);
        }
    }
}

TEST(Drag, YieldsToAConstraintAndComesAsNearAsItCan) {
    for (const Scope reach : {Scope::rings, Scope::part}) {
        SketchText sketch("fixed! point o 0,0; line a 0,0 10,0; coincident a.start o; distance a = 10");
        DragSession session = beginAt(sketch, "a.end", reach);
        for (int i = 1; i <= 40; ++i) {
            const double angle = 0.15 * i, radius = 10.0 + i;
            const Vec2 goal{radius * std::cos(angle), radius * std::sin(angle)};
            ASSERT_TRUE(dragTo(session, goal).isSolved()) << i;
            EXPECT_LT(distance(sketch.at("a.end"), {10 * std::cos(angle), 10 * std::sin(angle)}), 1e-5) << i;
            EXPECT_LT(sketch.worstViolation(), 1e-9) << i;
        }
    }
}

TEST(Drag, StretchesAnArmTowardsAGoalOutOfItsReach) {
    for (const Scope reach : {Scope::rings, Scope::part}) {
        SketchText sketch(kFoldedArm);
        DragSession session = beginAt(sketch, "b.end", reach);
        for (int i = 1; i <= 40; ++i) {
            ASSERT_TRUE(dragTo(session, {16.0 + i, 0.5 * i}).isSolved()) << i;
            EXPECT_LT(sketch.worstViolation(), 1e-9) << i;
        }
        const double whole = std::hypot(56.0, 20.0);
        EXPECT_LT(distance(sketch.at("b.end"), {20 * 56 / whole, 20 * 20 / whole}), 1e-3);
    }
}

TEST(Drag, StretchesALongChainTowardsAGoalOutOfItsReach) {
    SketchText sketch("fixed! point o 0,0;" + chainOfLinks(20) + "coincident l0.start o");
    DragSession session = beginAt(sketch, "l19.end");
    for (int i = 1; i <= 40; ++i) {
        ASSERT_TRUE(dragTo(session, {160.0 + 5 * i, 0.0}).isSolved()) << i;
        EXPECT_LT(sketch.worstViolation(), 1e-8) << i;
    }
    EXPECT_LT(distance(sketch.at("l19.end"), {200, 0}), 0.1);
}

TEST(Drag, FollowsAGoalOutOfReachSideways) {
    for (const Scope reach : {Scope::rings, Scope::part}) {
        SketchText sketch("fixed! point o 0,0;" + chainOfLinks(30) + "coincident l0.start o");
        DragSession session = beginAt(sketch, "l29.end", reach);
        for (int i = 0; i <= 60; ++i) {
            const double angle = 0.025 * i, radius = 240.0 + 10.0 * std::min(i, 20);
            ASSERT_TRUE(dragTo(session, {radius * std::cos(angle), radius * std::sin(angle)}).isSolved()) << i;
            EXPECT_LT(sketch.worstViolation(), 1e-8) << i;
            if (i >= 10) {
                EXPECT_LT(distance(sketch.at("l29.end"), {300 * std::cos(angle), 300 * std::sin(angle)}), 1.0) << i;
            }
        }
    }
}

/// A hand on a slider is never quite on its line. At the dead centre that is all that leads nearer at first.
TEST(Drag, LeavesADeadCentreUnderAHandThatIsNotOnTheLine) {
    for (const double beside : {0.0, 0.01, 0.5, -4.0}) {
        SketchText sketch(
            "fixed! point o 0,0; fixed! xline x 0,0 0; line crank 0,0 5,0; line rod 5,0 15,0; coincident crank.start "
            "o; coincident crank.end rod.start; point_on_curve rod.end x; distance crank = 5; distance rod = 10");
        DragSession session = beginAt(sketch, "rod.end");
        ASSERT_TRUE(dragTo(session, {12.0, beside}).isSolved()) << beside;
        session.land();
        EXPECT_NEAR(sketch.at("rod.end").x, 12.0, 1e-6) << beside;
        EXPECT_EQ(sketch.at("rod.end").y, 0.0) << beside;
        ASSERT_TRUE(dragTo(session, {20.0, beside}).isSolved()) << "beyond what the crank reaches";
        EXPECT_NEAR(sketch.at("rod.end").x, 15.0, 1e-2) << beside;
    }
}

TEST(Drag, StopsBeforeAnArcWouldCollapse) {
    SketchText sketch(
        "line a 0,0 20,0; arc k 20,5 5 270 360; fixed! xline y 0,0 0; tangent a.end k.start;"
        "point_on_curve a.start y; point_on_curve a.end y; fixed k.end");
    DragSession session = beginAt(sketch, "k.centre");
    for (int i = 0; i < 30; ++i)
        ASSERT_TRUE(dragTo(session, {20.0 + 0.2 * i, 5.0}).isSolved());
    EXPECT_GT(sketch.value("k", 2), 0.0);
    EXPECT_LT(sketch.worstViolation(), 1e-8);
}

/// The way there takes 19 iterations; it was gone three times.
TEST(Drag, GoesToAStopOnlyOnce) {
    SketchText sketch("fixed! line floor 0,0 10,0; circle wheel 5,3 3; tangent floor wheel");
    DragSession session = beginAt(sketch, "wheel.centre", Scope::part);
    const SolveResult result = dragTo(session, {5.0, -17.0});
    ASSERT_TRUE(result.isSolved());
    EXPECT_GT(sketch.value("wheel", 2), 0.0);
    EXPECT_LT(sketch.value("wheel", 2), 0.01);
    EXPECT_LE(result.iterations, 25);
}

TEST(Drag, LeavesOtherPartsAloneToTheLastBit) {
    SketchText sketch(chainOfLinks(6) + "line u 0.1,50.3 9.7,55.5; line v 9.7,55.5 3.3,60.1; coincident u.end v.start");
    const std::vector<double> before = sketch.sketch.values;
    DragSession session = beginAt(sketch, "l5.end");
    ASSERT_TRUE(dragTo(session, {45, 12}).isSolved());
    const auto first =
        static_cast<std::size_t>(sketch.sketch.entities[static_cast<std::size_t>(sketch.numbers["u"])].firstValue);
    for (std::size_t v = first; v < before.size(); ++v)
        EXPECT_EQ(sketch.sketch.values[v], before[v]);
}

}  // namespace
}  // namespace holdfast::solver::detail
