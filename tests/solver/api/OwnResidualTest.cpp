#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

#include <cmath>

namespace holdfast::solver {
namespace {

struct TriangleArea {
    double area, length;
    template <class T>
    void operator()(std::span<const T, 6> p, std::span<T, 1> rows) const {
        const T twice = (p[2] - p[0]) * (p[5] - p[1]) - (p[3] - p[1]) * (p[4] - p[0]);
        rows[0] = (twice * 0.5 - area) / length;
    }
};

/// A circle's area, and its centre on the parabola y = x^2 / 10.
struct DiscOnParabola {
    template <class T>
    void operator()(std::span<const T, 3> v, std::span<T, 2> rows) const {
        rows[0] = v[2] * v[2] * 3.0 - 12.0;
        rows[1] = v[1] - v[0] * v[0] / 10.0;
    }
};

double area(Vec2 a, Vec2 b, Vec2 c) {
    return 0.5 * geometry::cross(b - a, c - a);
}

TEST(OwnResidual, IsKeptLikeTheOthers) {
    Sketch sketch;
    const EntityId a = sketch.addPoint({0, 0}).value(), b = sketch.addPoint({4, 0}).value();
    const EntityId c = sketch.addPoint({1, 3}).value();
    const auto own = makeResidual<6, 1>(TriangleArea{12.0, 5.0}, {pointOf(a), pointOf(b), pointOf(c)});
    const ConstraintId id = sketch.add(own).value();
    (void)sketch.add(FixedPoint{pointOf(a)}).value();
    EXPECT_NEAR(residual(sketch, id).value(), 6.0 / 5.0, 1e-15);
    ASSERT_EQ(solve(sketch).ending, Ending::solved);
    EXPECT_NEAR(area({0, 0}, sketch.position(pointOf(b)), sketch.position(pointOf(c))), 12.0, 1e-9);
    DragSession session = DragSession::begin(sketch, {pointOf(c)}).value();
    ASSERT_TRUE(session.step({5, 2}).isSolved());
    EXPECT_NEAR(area({0, 0}, sketch.position(pointOf(b)), sketch.position(pointOf(c))), 12.0, 1e-9);
}

TEST(OwnResidual, CountsInTheDiagnosis) {
    Sketch sketch;
    const EntityId circle = sketch.addCircle({5, 1}, 1).value();
    const ConstraintId id = sketch.add(makeResidual<3, 2>(DiscOnParabola{}, {}, {circle})).value();
    ASSERT_EQ(solve(sketch).ending, Ending::solved);
    EXPECT_NEAR(sketch.values(circle)[2], 2.0, 1e-9);
    EXPECT_EQ(diagnose(sketch).value().freedom, 1);
    const ConstraintId radius = sketch.add(Radius{circle, 3}).value();
    const SolveResult result = solve(sketch);
    EXPECT_EQ(result.ending, Ending::conflicting);
    EXPECT_EQ(result.conflicting, (std::vector<ConstraintId>{id, radius}));
}

TEST(OwnResidual, HasToFitItsInputs) {
    Sketch sketch;
    const EntityId a = sketch.addPoint({0, 0}).value(), b = sketch.addLine({4, 0}, {5, 5}).value();
    const auto added = sketch.add(makeResidual<6, 1>(TriangleArea{12.0, 5.0}, {pointOf(a), startOf(b)}));
    ASSERT_FALSE(added.isDone());
    EXPECT_EQ(added.error().what, "its function reads 6 numbers and its places have 4");
    EXPECT_FALSE(
        sketch.add(makeResidual<6, 1>(TriangleArea{12.0, 5.0}, {pointOf(a), startOf(b), middleOf(b)})).isDone());
}

TEST(OwnResidual, SurvivesWhatIsRemovedBesideIt) {
    Sketch sketch;
    const EntityId gone = sketch.addLine({9, 9}, {8, 8}).value();
    const EntityId a = sketch.addPoint({0, 0}).value(), b = sketch.addPoint({4, 0}).value();
    const EntityId c = sketch.addPoint({1, 3}).value();
    const ConstraintId id =
        sketch.add(makeResidual<6, 1>(TriangleArea{12.0, 5.0}, {pointOf(a), pointOf(b), pointOf(c)})).value();
    (void)sketch.remove(gone).value();
    EXPECT_NEAR(residual(sketch, id).value(), 6.0 / 5.0, 1e-15);
    EXPECT_EQ(sketch.remove(b).value(), std::vector<ConstraintId>{id});
}

TEST(Dual, HasTheSlopesOfItsFunctions) {
    const double x = 0.7, h = 1e-6;
    const Dual<1> t = Dual<1>::variable(x, 0);
    const auto f = [](auto v) {
        using std::abs, std::atan, std::cos, std::exp, std::log, std::sin, std::sqrt;
        return exp(v) * sin(v) + log(v) / sqrt(v) - abs(-v) * atan(cos(v));
    };
    const Dual<1> y = f(t);
    EXPECT_DOUBLE_EQ(y.value, f(x));
    EXPECT_NEAR(y.slope[0], (f(x + h) - f(x - h)) / (2 * h), 1e-8);
}

}  // namespace
}  // namespace holdfast::solver
