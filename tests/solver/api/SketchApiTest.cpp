#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <unordered_set>

namespace holdfast::solver {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

template <class Kind, class... Members>
concept IsMadeOf = requires(Members... members) {
    Kind{members...};
};

TEST(Ids, DoNotMix) {
    static_assert(!std::is_convertible_v<EntityId, ConstraintId>);
    static_assert(!std::is_convertible_v<EntityId, PointId>);
    static_assert(!std::is_convertible_v<PointId, EntityId>);
    static_assert(!std::is_convertible_v<int, EntityId>);
    static_assert(std::is_convertible_v<EntityId, CurveId>);
    const EntityId e(1);
    const std::unordered_set<PointId> points{startOf(e), endOf(e), startOf(e)};
    EXPECT_EQ(points.size(), 2u);
    EXPECT_LT(EntityId(1), EntityId(2));
    EXPECT_EQ(toString(vertexOf(e, 3)), "vertex 3 of e1");
}

TEST(Constraints, OfAWrongArityDoNotCompile) {
    static_assert(IsMadeOf<Coincident, PointId, PointId>);
    static_assert(!IsMadeOf<Coincident, PointId>);
    static_assert(!IsMadeOf<Coincident, PointId, PointId, PointId>);
    static_assert(!IsMadeOf<Coincident, PointId, EntityId>);
    static_assert(IsMadeOf<Distance, PointId, PointId, double>);
    static_assert(!IsMadeOf<Distance, PointId, PointId>);
    static_assert(!IsMadeOf<Radius, EntityId>);
    static_assert(!IsMadeOf<Tangent, PointId, PointId>);
    static_assert(!IsMadeOf<Angle, CurveId, CurveId>);
    static_assert(IsMadeOf<LineDistance, CurveId, CurveId, double>);
    static_assert(!IsMadeOf<LineDistance, CurveId, CurveId>);
    static_assert(!IsMadeOf<LineDistance, PointId, CurveId, double>);
}

TEST(Sketch, GivesBackTheNumbersOfEachEntity) {
    Sketch sketch;
    const EntityId line = sketch.addLine({1, 2}, {3, 4}).value();
    const EntityId arc = sketch.addArc({0, 0}, 2, 0, std::numbers::pi / 2).value();
    const auto v = sketch.values(line);
    EXPECT_EQ(std::vector<double>(v.begin(), v.end()), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(sketch.kindOf(arc), EntityKind::arc);
    EXPECT_EQ(sketch.values(arc).size(), 7u);
    EXPECT_EQ(sketch.position(endOf(line)), (Vec2{3, 4}));
    EXPECT_EQ(sketch.position(middleOf(line)), (Vec2{2, 3}));
    EXPECT_NEAR(sketch.position(middleOf(arc)).x, std::sqrt(2.0), 1e-15);
    EXPECT_TRUE(std::isnan(sketch.position(centreOf(line)).x));
    EXPECT_TRUE(sketch.values(EntityId(99)).empty());
}

TEST(Sketch, NamesEveryVertexOfAPolyline) {
    Sketch sketch;
    const EntityId open = sketch.addPolyline({.vertices = {{0, 0}, {4, 0}, {4, 3}}, .bulges = {0, 1, 0}}).value();
    EXPECT_EQ(sketch.position(vertexOf(open, 0)), (Vec2{0, 0}));
    EXPECT_EQ(sketch.position(vertexOf(open, 2)), (Vec2{4, 3}));
    EXPECT_TRUE(std::isnan(sketch.position(vertexOf(open, 3)).x));
    EXPECT_TRUE(std::isnan(sketch.position(vertexOf(open, -1)).x));
    EXPECT_NEAR(sketch.position(centreOfSegment(open, 1)).y, 1.5, 1e-15);
    EXPECT_NEAR(sketch.position(middleOfSegment(open, 1)).x, 5.5, 1e-15);
}

struct Refusal {
    Result<EntityId> result;
    const char* where;
};

TEST(Sketch, RefusesEntitiesThatAreNone) {
    Sketch s;
    const double pi = std::numbers::pi;
    const Refusal refusals[] = {
        {s.addPoint({kNan, 0}), "point"},
        {s.addLine({1, 1}, {1, 1}), "line"},
        {s.addRay({0, 0}, kNan), "ray"},
        {s.addXline({kNan, 0}, 0), "unbounded line"},
        {s.addCircle({0, 0}, 0), "circle"},
        {s.addCircle({0, 0}, -1), "circle"},
        {s.addArc({0, 0}, 1, 1, 1), "arc"},
        {s.addArc({0, 0}, 1, 0, 2 * pi), "arc"},
        {s.addEllipse({0, 0}, {0, 0}, 0.5), "ellipse"},
        {s.addEllipse({0, 0}, {1, 0}, 1.5), "ellipse"},
        {s.addEllipticalArc({0, 0}, {1, 0}, 0.5, 2, 1), "elliptical arc"},
        {s.addSpline({.degree = 0, .control = {{0, 0}, {1, 0}}}), "spline"},
        {s.addSpline({.degree = 3, .control = {{0, 0}, {1, 0}}}), "spline"},
        {s.addSpline({.degree = 1, .control = {{0, 0}, {1, 0}}, .knots = {0, 0, 1}}), "spline"},
        {s.addSpline({.degree = 1, .control = {{0, 0}, {1, 0}}, .knots = {0, 1, 0, 1}}), "spline"},
        {s.addSpline({.degree = 1, .control = {{0, 0}, {1, 0}}, .weights = {1, 0}}), "spline"},
        {s.addSpline({.degree = 1, .control = {{0, 0}, {1, 0}}, .isPeriodic = true}), "spline"},
        {s.addPolyline({.vertices = {{0, 0}}}), "polyline"},
        {s.addPolyline({.vertices = {{0, 0}, {1, 0}}, .bulges = {1}}), "polyline"},
        {s.addPolyline({.vertices = {{0, 0}, {1, 0}, {1, 0}}}), "polyline"},
        {s.addText({0, 0}, 0, 0), "text"},
    };
    for (const Refusal& refusal : refusals) {
        ASSERT_FALSE(refusal.result.isDone()) << refusal.where;
        EXPECT_EQ(refusal.result.error().where, refusal.where);
        EXPECT_FALSE(refusal.result.error().what.empty());
        EXPECT_FALSE(refusal.result.error().remedy.empty());
    }
    EXPECT_TRUE(s.entities().empty());
}

TEST(Sketch, SaysWhatIsWrongWithAConstraintAndWhatWouldDo) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {1, 0}).value();
    const auto refused = sketch.add(Radius{line, 3});
    ASSERT_FALSE(refused.isDone());
    EXPECT_EQ(refused.error().where, "radius of e0");
    EXPECT_EQ(refused.error().what, "radius cannot hold on line e0");
    EXPECT_EQ(refused.error().remedy, "it takes a circle, an arc or an arc segment, and a length above 0");
    EXPECT_TRUE(sketch.constraints().empty());
}

TEST(Sketch, SaysThatAPointIsNotThere) {
    Sketch sketch;
    const EntityId bent = sketch.addPolyline({.vertices = {{0, 0}, {4, 0}, {4, 3}}, .bulges = {0, 0, 0}}).value();
    const EntityId point = sketch.addPoint({1, 1}).value(), circle = sketch.addCircle({5, 5}, 2).value();
    for (const PointId missing : {vertexOf(bent, 3), controlPointOf(bent, 0), startOf(circle)}) {
        const auto refused = sketch.add(Coincident{missing, pointOf(point)});
        ASSERT_FALSE(refused.isDone());
        EXPECT_EQ(refused.error().what, "there is no such point: " + toString(missing));
    }
    EXPECT_EQ(sketch.add(Focus{pointOf(point), circle}).error().what, "focus cannot hold on point e1, circle e2");
}

TEST(Sketch, RefusesConstraintsThatMakeNoSense) {
    Sketch sketch;
    const EntityId a = sketch.addLine({0, 0}, {4, 0}).value(), b = sketch.addLine({0, 1}, {4, 2}).value();
    const EntityId c = sketch.addCircle({0, 0}, 2).value();
    const Constraint wrong[] = {Tangent{a, b},
                                Parallel{a, a},
                                Coincident{startOf(a), startOf(a)},
                                Coincident{startOf(a), centreOf(b)},
                                Distance{startOf(a), endOf(a), -1},
                                Distance{startOf(a), endOf(a), kNan},
                                Radius{c, 0},
                                Sweep{c, 7},
                                Equal{a, c},
                                LineDistance{a, c, 2},
                                LineDistance{a, b, -2},
                                Coincident{startOf(EntityId(77)), startOf(a)},
                                Horizontal{CurveId(a, 2)},
                                OwnResidual{{startOf(a)}, {}, nullptr}};
    for (const Constraint& constraint : wrong) {
        const auto added = sketch.add(constraint);
        EXPECT_FALSE(added.isDone()) << nameOfKind(constraint);
        if (!added) {
            EXPECT_FALSE(added.error().remedy.empty()) << nameOfKind(constraint);
        }
    }
    EXPECT_TRUE(sketch.constraints().empty());
}

TEST(Sketch, RemovesAnEntityWithItsConstraints) {
    Sketch sketch;
    const EntityId a = sketch.addLine({0, 0}, {4, 0}).value(), b = sketch.addLine({4, 0}, {4, 3}).value();
    const EntityId spline = sketch.addSpline({.degree = 2, .control = {{0, 0}, {1, 1}, {2, 0}}}).value();
    const ConstraintId ends = sketch.add(Coincident{endOf(a), startOf(b)}).value();
    const ConstraintId length = sketch.add(Length{b, 3}).value();
    EXPECT_EQ(sketch.remove(a).value(), std::vector<ConstraintId>{ends});
    EXPECT_FALSE(sketch.contains(a));
    EXPECT_FALSE(sketch.contains(ends));
    EXPECT_TRUE(sketch.contains(length));
    EXPECT_EQ(sketch.position(endOf(b)), (Vec2{4, 3}));
    EXPECT_EQ(sketch.position(endOf(spline)), (Vec2{2, 0}));
    EXPECT_EQ(measure(sketch, length).value(), 3.0);
    EXPECT_FALSE(sketch.remove(a).isDone());
    EXPECT_GT(sketch.addPoint({0, 0}).value(), spline) << "numbers are given out once";
}

TEST(Sketch, CopiesAreOfTheirOwn) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 1}).value();
    const ConstraintId level = sketch.add(Horizontal{line}).value();
    Sketch copy = sketch;
    ASSERT_TRUE(solve(copy).isSolved());
    EXPECT_EQ(sketch.position(endOf(line)), (Vec2{4, 1}));
    EXPECT_EQ(copy.position(endOf(line)).y, copy.position(startOf(line)).y);
    Sketch moved = std::move(copy);
    EXPECT_TRUE(moved.contains(level));
    copy = sketch;
    EXPECT_TRUE(copy.contains(level));
}

TEST(Sketch, ChangesAValueOrLeavesItAsItWas) {
    Sketch sketch;
    const EntityId circle = sketch.addCircle({0, 0}, 2).value();
    const ConstraintId radius = sketch.add(Radius{circle, 2}).value();
    EXPECT_FALSE(sketch.setValue(radius, -1).isDone());
    EXPECT_EQ(residual(sketch, radius).value(), 0.0);
    ASSERT_TRUE(sketch.setValue(radius, 5).isDone());
    EXPECT_EQ(residual(sketch, radius).value(), 3.0);
    EXPECT_EQ(std::get<Radius>(sketch.constraint(radius)).value, 5.0);
    ASSERT_TRUE(solve(sketch).isSolved());
    EXPECT_EQ(sketch.values(circle)[2], 5.0);
}

TEST(Sketch, SwitchesConstraintsOffAndDimensionsToMeasuring) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 1}).value();
    const ConstraintId level = sketch.add(Horizontal{line}).value();
    const ConstraintId length = sketch.add(Length{line, 9}).value();
    ASSERT_TRUE(sketch.setActive(level, false).isDone());
    ASSERT_TRUE(sketch.setDriving(length, false).isDone());
    EXPECT_FALSE(sketch.setDriving(level, false).isDone());
    EXPECT_EQ(solve(sketch).ending, Ending::unchanged);
    EXPECT_NEAR(measure(sketch, length).value(), std::hypot(4.0, 1.0), 1e-15);
    EXPECT_FALSE(measure(sketch, level).isDone());
    ASSERT_TRUE(sketch.setActive(level, true).isDone());
    EXPECT_EQ(solve(sketch).ending, Ending::solved);
}

TEST(Sketch, HoldsWhatIsFixed) {
    Sketch sketch;
    const EntityId a = sketch.addPoint({0, 0}).value(), b = sketch.addPoint({4, 0}).value();
    (void)sketch.add(Distance{pointOf(a), pointOf(b), 10}).value();
    ASSERT_TRUE(sketch.fix(a).isDone());
    EXPECT_TRUE(sketch.isFixed(a));
    ASSERT_TRUE(solve(sketch).isSolved());
    EXPECT_EQ(sketch.position(pointOf(a)), (Vec2{0, 0}));
    EXPECT_EQ(sketch.position(pointOf(b)).x, 10.0);
    ASSERT_TRUE(sketch.unfix(a).isDone());
    EXPECT_FALSE(sketch.isFixed(a));
}

TEST(Sketch, TakesNumbersThatAnEntityCanHave) {
    Sketch sketch;
    const EntityId circle = sketch.addCircle({0, 0}, 2).value();
    EXPECT_TRUE(sketch.setValues(circle, std::vector<double>{5, 6, 7}).isDone());
    EXPECT_EQ(sketch.position(centreOf(circle)), (Vec2{5, 6}));
    EXPECT_FALSE(sketch.setValues(circle, std::vector<double>{5, 6}).isDone());
    EXPECT_FALSE(sketch.setValues(circle, std::vector<double>{5, 6, -1}).isDone());
    EXPECT_FALSE(sketch.setValues(circle, std::vector<double>{kNan, 6, 1}).isDone());
    EXPECT_EQ(sketch.values(circle)[2], 7.0);
}

}  // namespace
}  // namespace holdfast::solver
