#include "workbench/evaluator/Drag.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/workbench/evaluator/Sketch.h"

namespace holdfast {
namespace {

using testing::distance;
using testing::Sketch;

SolveResult dragTo(DragSession& session, Vec2 goal) {
    const double goals[] = {goal.x, goal.y};
    return session.step(goals);
}

DragSession beginAt(Sketch& sketch, std::string_view place, Reach reach = Reach::rings) {
    const int v = sketch.valueOf(place);
    return DragSession(sketch.figure, {v, v + 1}, reach);
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

TEST(Drag, PutsAFreePointWhereItIsDragged) {
    Sketch sketch("line a 0,0 10,0");
    DragSession session = beginAt(sketch, "a.end");
    EXPECT_EQ(dragTo(session, {12, 7}).status, SolveStatus::solved);
    EXPECT_LT(distance(sketch.at("a.end"), {12, 7}), 1e-12);
    EXPECT_EQ(distance(sketch.at("a.start"), {0, 0}), 0.0);
}

TEST(Drag, KeepsEveryConstraintInEveryStep) {
    Sketch sketch(
        "line a 0,0 20,0; arc k 20,5 5 270 350; line b 24.924,4.132 26,10; tangent a.end k.start;"
        "tangent k.end b.start; horizontal a; radius k = 5; distance b = 7");
    ASSERT_TRUE(solve(sketch.figure, {}).isSolved());
    const Vec2 start = sketch.at("b.end");
    DragSession session = beginAt(sketch, "b.end");
    for (int i = 1; i <= 40; ++i) {
        ASSERT_TRUE(dragTo(session, {start.x - 0.3 * i, start.y + 2 * std::sin(0.2 * i)}).isSolved()) << i;
        EXPECT_LT(sketch.worstMiss(), 1e-9) << i;
    }
}

TEST(Drag, ComesBackToWhereItBegan) {
    Sketch sketch(chainOfLinks(8));
    const std::vector<double> before = sketch.figure.values;
    DragSession session = beginAt(sketch, "l7.end");
    for (const double x : {62.0, 56.0, 40.0, 50.0, 64.0})
        ASSERT_TRUE(dragTo(session, {x, x < 63.0 ? 20.0 : 0.0}).isSolved());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_NEAR(sketch.figure.values[i], before[i], 1e-6);
}

TEST(Drag, MovesOnlyTheNeighbourhoodThatTheDragNeeds) {
    Sketch sketch(chainOfLinks(200));
    DragSession session = beginAt(sketch, "l100.start");
    const SolveResult result = dragTo(session, {800, 3});
    ASSERT_TRUE(result.isSolved());
    EXPECT_LT(session.miss(), 1e-4);
    EXPECT_LT(result.movements.size(), 40u);
    EXPECT_EQ(sketch.value("l0", 0), 0.0);
    EXPECT_EQ(sketch.value("l199", 2), 1600.0);
}

TEST(Drag, ReachesFartherWhenTheNeighbourhoodDoesNotSuffice) {
    Sketch sketch(chainOfLinks(40));
    DragSession session = beginAt(sketch, "l39.end");
    const int narrow = session.freedom();
    ASSERT_TRUE(dragTo(session, {290, 120}).isSolved());
    EXPECT_LT(session.miss(), 1e-3);
    EXPECT_GT(session.freedom(), narrow);
    EXPECT_LT(sketch.worstMiss(), 1e-8);
}

TEST(Drag, StopsBeforeAnArcWouldCollapse) {
    Sketch sketch(
        "line a 0,0 20,0; arc k 20,5 5 270 360; fixed! xline y 0,0 0; tangent a.end k.start;"
        "point_on_curve a.start y; point_on_curve a.end y; fixed k.end");
    DragSession session = beginAt(sketch, "k.centre");
    for (int i = 0; i < 30; ++i)
        ASSERT_TRUE(dragTo(session, {20.0 + 0.2 * i, 5.0}).isSolved());
    EXPECT_GT(sketch.value("k", 2), 0.0);
    EXPECT_LT(sketch.worstMiss(), 1e-8);
}

TEST(Drag, LeavesOtherPartsAloneToTheLastBit) {
    Sketch sketch(chainOfLinks(6) + "line u 0.1,50.3 9.7,55.5; line v 9.7,55.5 3.3,60.1; coincident u.end v.start");
    const std::vector<double> before = sketch.figure.values;
    DragSession session = beginAt(sketch, "l5.end");
    ASSERT_TRUE(dragTo(session, {45, 12}).isSolved());
    const auto first =
        static_cast<std::size_t>(sketch.figure.entities[static_cast<std::size_t>(sketch.numbers["u"])].firstValue);
    for (std::size_t v = first; v < before.size(); ++v)
        EXPECT_EQ(sketch.figure.values[v], before[v]);
}

}  // namespace
}  // namespace holdfast
