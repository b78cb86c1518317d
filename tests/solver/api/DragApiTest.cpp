#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

namespace holdfast::solver {
namespace {

/// A crank of length 3 about the origin.
struct Crank {
    Sketch sketch;
    EntityId arm = sketch.addLine({0, 0}, {3, 0}).value();
    ConstraintId length = sketch.add(Length{arm, 3}).value();

    Crank() { (void)sketch.add(FixedPoint{startOf(arm)}).value(); }
};

TEST(DragSession, BringsThePointAsNearAsItComes) {
    Crank crank;
    DragSession session = DragSession::begin(crank.sketch, {endOf(crank.arm)}).value();
    EXPECT_EQ(session.miss(), 0.0);
    const SolveResult result = session.step({0, 9});
    ASSERT_TRUE(result.isSolved());
    ASSERT_EQ(result.moved.size(), 1u);
    EXPECT_NEAR(crank.sketch.position(endOf(crank.arm)).y, 3.0, 1e-6);
    EXPECT_NEAR(session.miss(), 6.0, 1e-6);
    EXPECT_LT(residual(crank.sketch, crank.length).value(), 1e-9);
}

TEST(DragSession, ComesBackToItsBeginning) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {3, 4}).value();
    DragSession session = DragSession::begin(sketch, {endOf(line)}).value();
    ASSERT_TRUE(session.step({7, 7}).isSolved());
    EXPECT_EQ(sketch.position(startOf(line)), (Vec2{0, 0}));
    ASSERT_TRUE(session.step({3, 4}).isSolved());
    EXPECT_NEAR(sketch.position(endOf(line)).x, 3.0, 1e-12);
}

TEST(DragSession, SaysWhyItCannotBegin) {
    Crank crank;
    EXPECT_FALSE(DragSession::begin(crank.sketch, {}).isDone());
    EXPECT_FALSE(DragSession::begin(crank.sketch, {middleOf(crank.arm)}).isDone());
    EXPECT_FALSE(DragSession::begin(crank.sketch, {centreOf(crank.arm)}).isDone());
    ASSERT_TRUE(crank.sketch.setValue(crank.length, 4).isDone());
    const auto broken = DragSession::begin(crank.sketch, {endOf(crank.arm)});
    ASSERT_FALSE(broken.isDone());
    EXPECT_EQ(broken.error().remedy, "solve it before the drag begins");
}

TEST(DragSession, RefusesASketchThatChangedMeanwhile) {
    Crank crank;
    DragSession session = DragSession::begin(crank.sketch, {endOf(crank.arm)}).value();
    (void)crank.sketch.addPoint({1, 1}).value();
    EXPECT_EQ(session.step({0, 3}).ending, Ending::invalid);
    EXPECT_EQ(crank.sketch.position(endOf(crank.arm)), (Vec2{3, 0}));
}

TEST(DragSession, GoesOnAfterASolveThatMovedNothing) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 0}).value();
    DragSession drag = DragSession::begin(sketch, {endOf(line)}).value();
    ASSERT_EQ(solve(sketch).ending, Ending::unchanged);
    EXPECT_EQ(drag.step({5, 1}).ending, Ending::solved);
}

TEST(DragSession, KeepsTheSketchWhenItIsCancelled) {
    Crank crank;
    SolveOptions options;
    options.isCancelled = [] { return true; };
    DragSession session = DragSession::begin(crank.sketch, {endOf(crank.arm)}, options).value();
    EXPECT_EQ(session.step({0, 3}).ending, Ending::cancelled);
    EXPECT_EQ(crank.sketch.position(endOf(crank.arm)), (Vec2{3, 0}));
}

TEST(DragSession, WantsAGoalForEachHandle) {
    Crank crank;
    DragSession session = DragSession::begin(crank.sketch, {endOf(crank.arm)}).value();
    const Vec2 goals[] = {{1, 1}, {2, 2}};
    EXPECT_EQ(session.step(goals).ending, Ending::invalid);
}

TEST(DragSession, OutlivesAMoveOfItsSketch) {
    Crank crank;
    DragSession session = DragSession::begin(crank.sketch, {endOf(crank.arm)}).value();
    const Sketch moved = std::move(crank.sketch);
    ASSERT_TRUE(session.step({0, 3}).isSolved());
    EXPECT_NEAR(moved.position(endOf(crank.arm)).y, 3.0, 1e-6);
}

TEST(DragSession, StopsAtTheEndOfASplineAndComesBack) {
    Sketch s;
    const EntityId spline = s.addSpline({.control = {{0, 0}, {3, 4}, {7, -4}, {10, 0}}}).value();
    (void)s.fix(spline).value();
    const EntityId p = s.addPoint({8.5, -1}).value();
    const ConstraintId on = s.add(PointOnCurve{pointOf(p), spline}).value();
    ASSERT_TRUE(solve(s).isSolved());
    const Vec2 before = s.position(pointOf(p));
    DragSession drag = DragSession::begin(s, {pointOf(p)}).value();
    for (const double x : {9.0, 9.9, 10.5, 12.0, 14.0, 12.0, 9.5, before.x}) {
        EXPECT_TRUE(drag.step({x, x > 10 ? 0.0 : before.y}).isSolved()) << x;
        EXPECT_LT(residual(s, on).value(), 1e-9) << x;
        if (x >= 10.5) {
            EXPECT_NEAR(s.position(pointOf(p)).x, 10, 1e-6) << x;
        }
    }
    EXPECT_NEAR(s.position(pointOf(p)).x, before.x, 1e-6);
}

}  // namespace
}  // namespace holdfast::solver
