// Every allocation of what the solver's face does fails once. A program of its own, since operator new is replaced.

#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

#include <functional>
#include <iostream>
#include <new>

#include "tests/support/FailingAllocations.h"

namespace holdfast::solver {
namespace {

/// One entity of most kinds, with constraints that hold and a dimension to change.
struct Scene {
    Sketch s;
    EntityId a = s.addLine({0, 0}, {10, 0}).value(), b = s.addLine({10, 0}, {14, 3}).value();
    EntityId k = s.addArc({0, 5}, 5, 3.141592653589793, 4.71238898038469).value();
    EntityId spline = s.addSpline({.control = {{14, 3}, {17, 9}, {22, 6}, {25, 8}}}).value();
    EntityId w = s.addPolyline({.vertices = {{0, -9}, {5, -9}, {9, -5}}, .bulges = {0, 0.5, 0}}).value();
    EntityId p = s.addPoint({25, 8}).value();
    ConstraintId level = s.add(Horizontal{a}).value();
    ConstraintId corner = s.add(Coincident{endOf(a), startOf(b)}).value();
    ConstraintId length = s.add(Length{b, 5}).value();
    ConstraintId round = s.add(TangentEnds{startOf(a), endOf(k)}).value();
    ConstraintId onSpline = s.add(PointOnCurve{pointOf(p), spline}).value();

    Scene() { EXPECT_TRUE(solve(s).isSolved()); }
};

/// All that can be read of a sketch, as numbers and text.
struct Reading {
    std::vector<double> values;
    std::vector<ConstraintId> constraints;
    std::vector<EntityId> entities;
    std::vector<int> flags;

    explicit Reading(const Sketch& s) : constraints(s.constraints()), entities(s.entities()) {
        for (const EntityId e : entities) {
            values.insert(values.end(), s.values(e).begin(), s.values(e).end());
            flags.push_back(s.isFixed(e));
        }
        for (const ConstraintId c : constraints) {
            flags.insert(flags.end(), {s.isActive(c), s.isDriving(c), static_cast<int>(s.constraint(c).index())});
            values.push_back(residual(s, c).value());
        }
    }
    friend bool operator==(const Reading&, const Reading&) = default;
};

/// Something that a sketch is asked for; false when it is refused.
struct Operation {
    const char* name;
    std::function<bool(Scene&)> perform;
};

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = {
        {"add a line",
         [](Scene& t) {
             return t.s.addLine({1, 1}, {2, 5}).isDone();
         }},
        {"add an arc",
         [](Scene& t) {
             return t.s.addArc({1, 1}, 2, 0, 1).isDone();
         }},
        {"add a spline",
         [](Scene& t) {
             return t.s.addSpline({.control = {{1, 1}, {2, 5}, {5, 5}, {6, 1}}}).isDone();
         }},
        {"add a polyline",
         [](Scene& t) {
             return t.s.addPolyline({.vertices = {{1, 1}, {2, 5}}, .bulges = {1, 0}}).isDone();
         }},
        {"refuse a circle",
         [](Scene& t) {
             return !t.s.addCircle({1, 1}, -1).isDone();
         }},
        {"add a constraint",
         [](Scene& t) {
             return t.s.add(Perpendicular{t.a, t.b}).isDone();
         }},
        {"add a dimension",
         [](Scene& t) {
             return t.s.add(Radius{t.k, 4}).isDone();
         }},
        {"refuse a constraint",
         [](Scene& t) {
             return !t.s.add(Radius{t.a, 4}).isDone();
         }},
        {"remove an entity", [](Scene& t) { return t.s.remove(t.a).isDone(); }},
        {"remove a constraint", [](Scene& t) { return t.s.remove(t.corner).isDone(); }},
        {"set a value", [](Scene& t) { return t.s.setValue(t.length, 7).isDone(); }},
        {"refuse a value", [](Scene& t) { return !t.s.setValue(t.length, -7).isDone(); }},
        {"fix", [](Scene& t) { return t.s.fix(t.b).isDone(); }},
        {"set numbers",
         [](Scene& t) {
             const double there[] = {10, 0, 13, 4};
             return t.s.setValues(t.b, there).isDone();
         }},
        {"solve for a target",
         [](Scene& t) {
             const Target target{endOf(t.b), {15, 2}};
             return solve(t.s, {&target, 1}).isSolved();
         }},
        {"solve after a change", [](Scene& t) { return t.s.setValue(t.length, 6).isDone() && solve(t.s).isSolved(); }},
        {"explain a contradiction",
         [](Scene& t) {
             return t.s.add(Length{t.b, 9}).isDone() && solve(t.s).ending == Ending::conflicting;
         }},
        {"drag",
         [](Scene& t) {
             DragSession session = DragSession::begin(t.s, {pointOf(t.p)}).value();
             return session.step({22, 7}).isSolved() && session.step({20, 6}).isSolved();
         }},
        {"diagnose", [](Scene& t) { return diagnose(t.s).value().redundant.empty(); }},
        {"measure", [](Scene& t) { return measure(t.s, t.length).value() > 0.0; }},
        {"copy",
         [](Scene& t) {
             t.s = Sketch(t.s);
             return true;
         }},
    };
    return all;
}

/// Whether the operation came to its end although the allocation after so many fails.
bool comesThrough(const Operation& operation, Scene& scene, long allocations) {
    failAllocationAfter(allocations);
    try {
        EXPECT_TRUE(operation.perform(scene));
    } catch (const std::bad_alloc&) {
        return false;
    }
    EXPECT_FALSE(stopFailing()) << "nobody was told that memory ran out";
    return true;
}

/// Operations of several steps leave the steps before the one in which memory ran out done.
bool isOneStep(const Operation& operation) {
    const std::string name = operation.name;
    return name != "solve after a change" && name != "explain a contradiction" && name != "drag";
}

TEST(OutOfMemory, InAnyAllocationLeavesTheSketchAsItWas) {
    const Scene scene;
    const Reading before(scene.s);
    long all = 0;
    for (const Operation& operation : operations()) {
        Scene undisturbed(scene);
        ASSERT_TRUE(operation.perform(undisturbed)) << operation.name;
        const Reading after(undisturbed.s);
        long nth = 0;
        for (;; ++nth) {
            SCOPED_TRACE(std::string(operation.name) + ", allocation " + std::to_string(nth + 1));
            Scene failing(scene);
            const bool isThrough = comesThrough(operation, failing, nth);
            ASSERT_FALSE(testing::Test::HasFailure());
            if (isThrough)
                break;
            if (!isOneStep(operation))
                continue;
            ASSERT_TRUE(Reading(failing.s) == before);
            ASSERT_TRUE(operation.perform(failing));
            ASSERT_TRUE(Reading(failing.s) == after) << "it goes on otherwise than one that was not disturbed";
        }
        all += nth;
    }
    std::cout << all << " allocations of " << operations().size() << " operations failed\n";
}

TEST(OutOfMemory, InASolveOrADragLeavesTheNumbersAsTheyWere) {
    const Scene scene;
    for (long nth = 0;; ++nth) {
        Scene changed(scene);
        ASSERT_TRUE(changed.s.setValue(changed.length, 6).isDone());
        const Reading before(changed.s);
        if (comesThrough({"solve", [](Scene& t) { return solve(t.s).isSolved(); }}, changed, nth))
            break;
        ASSERT_TRUE(Reading(changed.s) == before) << nth;
    }
    for (long nth = 0;; ++nth) {
        Scene dragged(scene);
        DragSession session = DragSession::begin(dragged.s, {endOf(dragged.b)}).value();
        ASSERT_TRUE(session.step({14, 2}).isSolved());
        const Reading before(dragged.s);
        if (comesThrough({"step", [&](Scene&) { return session.step({13, 1}).isSolved(); }}, dragged, nth))
            break;
        ASSERT_TRUE(Reading(dragged.s) == before) << nth;
        EXPECT_EQ(session.step({13, 1}).ending, Ending::invalid) << "the session is over";
        ASSERT_TRUE(Reading(dragged.s) == before) << nth;
    }
}

}  // namespace
}  // namespace holdfast::solver
