#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <stdexcept>

namespace holdfast::solver {
namespace {

/// A zigzag of links of length 10 whose ends meet; the first one begins at a fixed point.
struct Chain {
    Sketch sketch;
    std::vector<EntityId> links;

    explicit Chain(int count) {
        for (int i = 0; i < count; ++i) {
            const double y = i % 2 == 0 ? 0.0 : 6.0;
            links.push_back(sketch.addLine({8.0 * i, y}, {8.0 * i + 8.0, 6.0 - y}).value());
            (void)sketch.add(Length{links.back(), 10}).value();
            if (i > 0)
                (void)sketch.add(Coincident{endOf(links[links.size() - 2]), startOf(links.back())}).value();
        }
        (void)sketch.add(FixedPoint{startOf(links.front())}).value();
    }

    std::vector<double> numbers() const {
        std::vector<double> all;
        for (const EntityId link : links) {
            const auto v = sketch.values(link);
            all.insert(all.end(), v.begin(), v.end());
        }
        return all;
    }
};

bool areSameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

std::vector<Target> endTo(const Chain& chain, Vec2 goal) {
    return {{endOf(chain.links.back()), goal}};
}

TEST(Solve, MakesTheConstraintsHoldAndTellsWhatMoved) {
    Sketch sketch;
    const EntityId a = sketch.addLine({0, 0}, {4, 1}).value();
    const EntityId b = sketch.addLine({20, 0}, {24, 0}).value();
    const ConstraintId level = sketch.add(Horizontal{a}).value();
    (void)sketch.add(Horizontal{b}).value();
    const SolveResult result = solve(sketch);
    EXPECT_EQ(result.ending, Ending::solved);
    ASSERT_EQ(result.moved.size(), 1u);
    EXPECT_EQ(result.moved.front().entity, a);
    EXPECT_EQ(result.moved.front().distance, 0.5);
    EXPECT_EQ(residual(sketch, level).value(), 0.0);
    EXPECT_EQ(solve(sketch).ending, Ending::unchanged);
}

TEST(Solve, BringsPointsToTheirTargets) {
    Chain chain(3);
    const SolveResult result = solve(chain.sketch, endTo(chain, {20, 10}));
    ASSERT_EQ(result.ending, Ending::solved);
    EXPECT_EQ(chain.sketch.position(endOf(chain.links.back())), (Vec2{20, 10}));
    EXPECT_EQ(chain.sketch.position(startOf(chain.links.front())), (Vec2{0, 0}));
    EXPECT_GT(result.iterations, 0);
    EXPECT_GT(result.times.building, 0.0);
    EXPECT_GT(result.times.iterating, 0.0);
    EXPECT_GT(result.times.total(), 0.0);
}

TEST(Solve, LeavesTheSketchAsItWasWhenATargetIsOutOfReach) {
    Chain chain(2);
    const auto before = chain.numbers();
    const SolveResult result = solve(chain.sketch, endTo(chain, {100, 0}));
    EXPECT_EQ(result.ending, Ending::conflicting);
    EXPECT_EQ(result.contradictedTargets, std::vector<std::size_t>{0});
    EXPECT_TRUE(areSameBits(before, chain.numbers()));
}

TEST(Solve, NamesTheConstraintsInConflict) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 0}).value();
    const ConstraintId shorter = sketch.add(Length{line, 5}).value();
    (void)sketch.add(Horizontal{line}).value();
    const ConstraintId longer = sketch.add(Length{line, 6}).value();
    const SolveResult result = solve(sketch);
    EXPECT_EQ(result.ending, Ending::conflicting);
    EXPECT_NE(std::find(result.conflicting.begin(), result.conflicting.end(), longer), result.conflicting.end());
    EXPECT_NE(std::find(result.conflicting.begin(), result.conflicting.end(), shorter), result.conflicting.end());
    EXPECT_TRUE(result.isConflictMinimal);
    EXPECT_EQ(result.briefReport().substr(0, 14), "conflicting in");
    SolveOptions brief;
    brief.explainsConflicts = false;
    EXPECT_LE(solve(sketch, brief).conflicting.size(), 0u);
}

TEST(Solve, NamesAConflictThatComesUpWhileValuesAreMerged) {
    Sketch sketch;
    const EntityId base = sketch.addLine({0, 0}, {30, 0}).value(), wall = sketch.addLine({30, 0}, {30, 40}).value();
    const EntityId brace = sketch.addLine({0, 0}, {30, 40}).value();
    const Constraint joints[] = {Coincident{endOf(base), startOf(wall)}, Coincident{endOf(wall), endOf(brace)},
                                 Coincident{startOf(brace), startOf(base)}, Horizontal{base}, Vertical{wall}};
    for (const Constraint& joint : joints)
        (void)sketch.add(joint).value();
    const ConstraintId a = sketch.add(Length{base, 30}).value(), b = sketch.add(Length{wall, 40}).value();
    const ConstraintId c = sketch.add(Length{brace, 55}).value();
    const SolveResult result = solve(sketch);
    ASSERT_EQ(result.ending, Ending::conflicting);
    for (const ConstraintId id : {a, b, c})
        EXPECT_EQ(std::count(result.conflicting.begin(), result.conflicting.end(), id), 1) << toString(id);
}

/// A level line of length 10 from a fixed point, and a rod that hangs on its end.
struct Arm {
    Sketch sketch;
    EntityId bar = sketch.addLine({0, 0}, {10, 0}).value(), rod = sketch.addLine({10, 0}, {16, 8}).value();
    ConstraintId length = sketch.add(Length{bar, 10}).value();

    Arm() {
        (void)sketch.add(FixedPoint{startOf(bar)}).value();
        (void)sketch.add(Horizontal{bar}).value();
        (void)sketch.add(Coincident{endOf(bar), startOf(rod)}).value();
    }

    double rodLength() const {
        const Vec2 a = sketch.position(startOf(rod)), b = sketch.position(endOf(rod));
        return std::hypot(b.x - a.x, b.y - a.y);
    }
};

TEST(Solve, GivesADimensionAnotherValue) {
    Arm arm;
    SolveOptions options;
    options.values = {{arm.length, 14}};
    ASSERT_EQ(solve(arm.sketch, options).ending, Ending::solved);
    EXPECT_NEAR(arm.sketch.position(endOf(arm.bar)).x, 14, 1e-9);
    EXPECT_EQ(std::get<Length>(arm.sketch.constraint(arm.length)).value, 14.0);
    EXPECT_EQ(solve(arm.sketch).ending, Ending::unchanged);
}

TEST(Solve, ShiftsANeighbourBeforeItChangesItsShapeWhereAsked) {
    Arm loose, kept;
    SolveOptions options;
    options.values = {{loose.length, 14}};
    ASSERT_EQ(solve(loose.sketch, options).ending, Ending::solved);
    options.keepsShapes = true;
    ASSERT_EQ(solve(kept.sketch, options).ending, Ending::solved);
    EXPECT_GT(std::abs(loose.rodLength() - 10), 0.5);
    EXPECT_NEAR(kept.rodLength(), 10, 1e-9);
    EXPECT_NEAR(kept.sketch.position(endOf(kept.rod)).x, 20, 1e-9);
    EXPECT_NEAR(kept.sketch.position(endOf(kept.rod)).y, 8, 1e-9);
}

TEST(Solve, KeepsShapesWhereOnlyDimensionsDoNotHold) {
    Arm arm;
    ASSERT_TRUE(arm.sketch.setValue(arm.length, 14).isDone());
    SolveOptions options;
    options.keepsShapes = true;
    ASSERT_EQ(solve(arm.sketch, options).ending, Ending::solved);
    EXPECT_NEAR(arm.rodLength(), 10, 1e-9);
}

/// A triangle with sides 5 and 4 over a base that stands at 3.
struct Triangle {
    Sketch sketch;
    EntityId a = sketch.addPoint({0, 0}).value(), b = sketch.addPoint({3, 0}).value();
    EntityId c = sketch.addPoint({3, 4}).value();
    ConstraintId base = sketch.add(Distance{pointOf(a), pointOf(b), 3}).value();
    ConstraintId long_ = sketch.add(Distance{pointOf(a), pointOf(c), 5}).value();
    ConstraintId short_ = sketch.add(Distance{pointOf(b), pointOf(c), 4}).value();
};

TEST(Solve, SaysHowFarADimensionCouldBeLed) {
    Triangle triangle;
    const std::vector<EntityId> points = triangle.sketch.entities();
    std::vector<Vec2> before;
    for (const EntityId point : points)
        before.push_back(triangle.sketch.position(pointOf(point)));
    SolveOptions options;
    options.values = {{triangle.base, 12}};
    const SolveResult result = solve(triangle.sketch, options);
    ASSERT_EQ(result.ending, Ending::conflicting);
    EXPECT_EQ(result.conflicting, (std::vector<ConstraintId>{triangle.base, triangle.long_, triangle.short_}));
    EXPECT_TRUE(result.isConflictMinimal);
    ASSERT_TRUE(result.reached);
    EXPECT_GT(result.reached->part, 0.5);
    EXPECT_LE(result.reached->part, 6.0 / 9.0);
    ASSERT_EQ(result.reached->dimensions.size(), 1u);
    const LedDimension& led = result.reached->dimensions.front();
    EXPECT_EQ(led.dimension, triangle.base);
    EXPECT_NEAR(led.from, 3, 1e-12);
    EXPECT_NEAR(led.to, 3 + 9 * result.reached->part, 1e-12);
    EXPECT_NE(result.briefReport().find("c0 led from 3 to 8."), std::string::npos) << result.briefReport();
    EXPECT_NE(result.fullReport().find("c0 led from 3 to 8."), std::string::npos) << result.fullReport();
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_EQ(triangle.sketch.position(pointOf(points[i])), before[i]);
    EXPECT_EQ(std::get<Distance>(triangle.sketch.constraint(triangle.base)).value, 3.0);
    options.values = {{triangle.base, led.to}};
    EXPECT_EQ(solve(triangle.sketch, options).ending, Ending::solved);
}

TEST(Solve, RefusesValuesThatADimensionCannotHave) {
    Arm arm;
    const ConstraintId level = arm.sketch.add(Horizontal{arm.rod}).value();
    const ConstraintId measuring = arm.sketch.add(Length{arm.rod, 3}).value();
    ASSERT_TRUE(arm.sketch.setDriving(measuring, false).isDone());
    const std::vector<ValueGoal> refused[] = {{{level, 3}},
                                              {{measuring, 3}},
                                              {{ConstraintId(99), 3}},
                                              {{arm.length, -1}},
                                              {{arm.length, std::nan("")}},
                                              {{arm.length, 11}, {arm.length, 12}}};
    for (const std::vector<ValueGoal>& values : refused) {
        SolveOptions options;
        options.values = values;
        const SolveResult result = solve(arm.sketch, options);
        EXPECT_EQ(result.ending, Ending::invalid);
        ASSERT_TRUE(result.error);
        EXPECT_FALSE(result.error->remedy.empty()) << result.error->message();
        EXPECT_EQ(std::get<Length>(arm.sketch.constraint(arm.length)).value, 10.0);
    }
}

TEST(Solve, LeavesWhatIsNotConnectedWithTheTargetsAndTellsWhatDoesNotHoldThere) {
    Arm arm;
    const EntityId elsewhere = arm.sketch.addLine({50, 0}, {54, 1}).value();
    const ConstraintId broken = arm.sketch.add(Horizontal{elsewhere}).value();
    const Target target[] = {{endOf(arm.rod), {18, 9}}};
    const SolveResult result = solve(arm.sketch, target);
    ASSERT_EQ(result.ending, Ending::solved);
    EXPECT_EQ(result.leftAlone, std::vector<ConstraintId>{broken});
    EXPECT_NE(result.fullReport().find("left alone      " + toString(broken)), std::string::npos);
    EXPECT_EQ(arm.sketch.position(endOf(elsewhere)), (Vec2{54, 1}));
}

TEST(Solve, KeepsOtherPointsOfWhatIsEdited) {
    const auto edited = [](bool keeps) {
        Sketch sketch;
        const EntityId line = sketch.addLine({0, 0}, {10, 0}).value(), twin = sketch.addLine({0, 20}, {9, 20}).value();
        (void)sketch.add(Parallel{line, twin}).value();
        SolveOptions options;
        options.edited = {line};
        if (keeps)
            options.kept = {endOf(line)};
        const Target target[] = {{startOf(line), {0, 3}}};
        EXPECT_EQ(solve(sketch, target, options).ending, Ending::solved);
        return sketch.position(endOf(line));
    };
    EXPECT_EQ(edited(true), (Vec2{10, 0}));
    EXPECT_NE(edited(false), (Vec2{10, 0}));
}

TEST(Solve, EndsAtItsLimitsWithTheSketchAsItWas) {
    for (const Ending expected : {Ending::iterationLimit, Ending::timeLimit, Ending::cancelled}) {
        Chain chain(6);
        const auto before = chain.numbers();
        SolveOptions options;
        if (expected == Ending::iterationLimit)
            options.iterations = 1;
        if (expected == Ending::timeLimit)
            options.timeLimit = std::chrono::nanoseconds(0);
        if (expected == Ending::cancelled)
            options.isCancelled = [] { return true; };
        const SolveResult result = solve(chain.sketch, endTo(chain, {30, 20}), options);
        EXPECT_EQ(result.ending, expected);
        EXPECT_LE(result.iterations, 1);
        EXPECT_TRUE(areSameBits(before, chain.numbers()));
        EXPECT_TRUE(solve(chain.sketch, endTo(chain, {30, 20})).isSolved());
    }
}

TEST(Solve, AsksBeforeEveryFactorisationWhetherItIsCancelled) {
    Chain chain(6);
    int asked = 0;
    SolveOptions options;
    options.isCancelled = [&] {
        ++asked;
        return false;
    };
    const SolveResult result = solve(chain.sketch, endTo(chain, {30, 20}), options);
    ASSERT_TRUE(result.isSolved());
    EXPECT_GE(asked, 2);
    Chain same(6);
    EXPECT_EQ(result.iterations, solve(same.sketch, endTo(same, {30, 20})).iterations);
}

TEST(Solve, LetsPassWhatTheCallbackThrows) {
    Chain chain(6);
    const auto before = chain.numbers();
    SolveOptions options;
    options.isCancelled = []() -> bool { throw std::runtime_error("mine"); };
    EXPECT_THROW((void)solve(chain.sketch, endTo(chain, {30, 20}), options), std::runtime_error);
    EXPECT_TRUE(areSameBits(before, chain.numbers()));
    EXPECT_TRUE(solve(chain.sketch, endTo(chain, {30, 20})).isSolved());
}

TEST(Solve, RefusesOptionsAndTargetsThatMakeNoSense) {
    Chain chain(2);
    SolveOptions options;
    options.tolerance = 0.0;
    EXPECT_EQ(solve(chain.sketch, options).ending, Ending::invalid);
    options = {};
    options.iterations = -1;
    EXPECT_EQ(solve(chain.sketch, options).ending, Ending::invalid);
    options = {};
    options.edited = {EntityId(99)};
    EXPECT_EQ(solve(chain.sketch, options).ending, Ending::invalid);
    const Target middle[] = {{middleOf(chain.links.front()), {1, 1}}};
    const SolveResult result = solve(chain.sketch, middle);
    EXPECT_EQ(result.ending, Ending::invalid);
    ASSERT_TRUE(result.error.has_value());
    EXPECT_EQ(result.error->where, "the middle of e0");
}

TEST(Solve, StopsAtALooserTolerance) {
    const auto missAt = [](double tolerance) {
        Chain chain(4);
        SolveOptions options;
        options.tolerance = tolerance;
        EXPECT_TRUE(solve(chain.sketch, endTo(chain, {25, 8}), options).isSolved());
        double worst = 0.0;
        for (const ConstraintId c : chain.sketch.constraints())
            worst = std::max(worst, residual(chain.sketch, c).value());
        return worst;
    };
    EXPECT_LT(missAt(1e-10), 1e-8);
    EXPECT_LT(missAt(1e-4), 1e-2);
}

TEST(Solve, GivesTheSameBitsForTheSameSketch) {
    Chain one(8), two(8);
    const SolveResult first = solve(one.sketch, endTo(one, {40, 25}));
    const SolveResult second = solve(two.sketch, endTo(two, {40, 25}));
    ASSERT_TRUE(first.isSolved());
    EXPECT_EQ(first.iterations, second.iterations);
    EXPECT_TRUE(areSameBits(one.numbers(), two.numbers()));
    Chain third(8);
    Sketch copy = third.sketch;
    ASSERT_TRUE(solve(copy, endTo(third, {40, 25})).isSolved());
    for (const EntityId link : third.links) {
        const auto a = copy.values(link), b = one.sketch.values(link);
        EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin(), b.end()));
    }
}

TEST(Solve, ReportsInALineAndInFull) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 1}).value();
    (void)sketch.add(Horizontal{line}).value();
    const SolveResult result = solve(sketch);
    EXPECT_EQ(result.briefReport(), "solved in 1 iteration, worst residual 0, 1 entity moved");
    EXPECT_NE(result.fullReport().find("moved           e0 by 0.5\n"), std::string::npos);
    EXPECT_NE(result.fullReport().find("iterating"), std::string::npos);
}

TEST(Solve, RefusesWhatWouldCollapse) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 0}).value();
    const Target targets[] = {{startOf(line), {2, 0}}, {endOf(line), {2, 0}}};
    const SolveResult result = solve(sketch, targets);
    EXPECT_EQ(result.ending, Ending::degenerate);
    EXPECT_EQ(result.flaw, "line e0 would have no length");
    EXPECT_EQ(sketch.position(endOf(line)), (Vec2{4, 0}));
}

/// A point on a fixed spline that runs along the x axis from 0 to 10.
struct OnSpline {
    Sketch s;
    EntityId spline = s.addSpline({.control = {{0, 0}, {3, 0}, {7, 0}, {10, 0}}}).value();
    EntityId p;
    ConstraintId on;

    explicit OnSpline(Vec2 position)
        : p(s.addPoint(position).value()), on(s.add(PointOnCurve{pointOf(p), spline}).value()) {
        (void)s.fix(spline).value();
    }
};

TEST(PointOnSpline, ComesToTheEndFromBeyondIt) {
    for (const double x : {10.5, 14.0, -3.0}) {
        OnSpline sketch({x, 1});
        const SolveResult result = solve(sketch.s);
        EXPECT_EQ(result.ending, Ending::solved) << result.fullReport();
        EXPECT_NEAR(sketch.s.position(pointOf(sketch.p)).x, x > 0 ? 10 : 0, 1e-9);
        EXPECT_LT(residual(sketch.s, sketch.on).value(), 1e-9);
    }
}

TEST(PointOnSpline, IsNotSolvedBeyondTheEnd) {
    OnSpline sketch({9, 0});
    const Target beyond[] = {{pointOf(sketch.p), {12, 0}}};
    EXPECT_FALSE(solve(sketch.s, beyond).isSolved());
    EXPECT_EQ(sketch.s.position(pointOf(sketch.p)), (Vec2{9, 0}));
    const Target inside[] = {{pointOf(sketch.p), {1, 0}}};
    EXPECT_TRUE(solve(sketch.s, inside).isSolved());
}

TEST(PointOnSpline, LeavesAnEndInwards) {
    OnSpline sketch({10, 0});
    EXPECT_EQ(solve(sketch.s).ending, Ending::unchanged);
    const Target inside[] = {{pointOf(sketch.p), {2, 0}}};
    EXPECT_TRUE(solve(sketch.s, inside).isSolved());
    EXPECT_LT(residual(sketch.s, sketch.on).value(), 1e-9);
}

TEST(TangentToSpline, IsNotSolvedBeyondTheEnd) {
    Sketch s;
    const EntityId spline = s.addSpline({.degree = 2, .control = {{0, 0}, {5, 0}, {10, 5}}}).value();
    (void)s.fix(spline).value();
    const EntityId line = s.addXline({12, 0}, 1.2).value();
    const ConstraintId tangent = s.add(Tangent{line, spline}).value();
    (void)s.add(Direction{line, 1.2}).value();
    const SolveResult result = solve(s);
    EXPECT_TRUE(!result.isSolved() || residual(s, tangent).value() < 1e-8) << residual(s, tangent).value();
}

}  // namespace
}  // namespace holdfast::solver
