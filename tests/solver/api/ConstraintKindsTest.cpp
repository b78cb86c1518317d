#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

#include <functional>
#include <numbers>
#include <set>

// Every kind of constraint, drawn off, added by its struct, solved.

namespace holdfast::solver {
namespace {

constexpr double kPi = std::numbers::pi;

/// Entities that nearly are what the constraints below ask for.
struct Things {
    Sketch s;
    EntityId p = s.addPoint({3, 3}).value(), q = s.addPoint({-4, 6}).value(), r = s.addPoint({0.5, 5}).value();
    EntityId a = s.addLine({0, 0}, {10, 1}).value(), b = s.addLine({10.4, 1.2}, {16, 6}).value();
    EntityId axis = s.addXline({0, 4}, 0.1).value();
    EntityId c = s.addCircle({5, 8}, 3).value(), d = s.addCircle({6, 9}, 5).value();
    EntityId k = s.addArc({16.5, 11}, 5, 1.5 * kPi, 1.9 * kPi).value();
    EntityId e = s.addEllipse({-10, 0}, {5, 1}, 0.5).value(), f = s.addEllipse({-9, 1}, {6, 1}, 0.6).value();
    EntityId diameter = s.addLine({-15, -1.5}, {-5.5, 1}).value();
    EntityId across = s.addLine({-9, -2}, {-10, 2}).value();
    EntityId spline = s.addSpline({.control = {{17, 6}, {20, 9}, {24, 6}, {28, 8}}}).value();
    EntityId above = s.addPoint({22, 8.5}).value();
    EntityId text = s.addText({1, -3}, 0.2, 2.5).value();
    EntityId w = s.addPolyline({.vertices = {{0, -9}, {5, -8.5}, {9, -5}}, .bulges = {0, 0.5, 0}}).value();
};

using Make = std::function<Constraint(const Things&)>;

const std::vector<Make>& kinds() {
    static const std::vector<Make> all = {
        [](const Things& t) {
            return Coincident{endOf(t.a), startOf(t.b)};
        },
        [](const Things& t) {
            return Concentric{t.c, t.d};
        },
        [](const Things& t) {
            return Concentric{t.c, segmentOf(t.w, 1)};
        },
        [](const Things& t) {
            return PointOnCurve{pointOf(t.p), t.a};
        },
        [](const Things& t) {
            return PointOnCurve{pointOf(t.above), t.spline};
        },
        [](const Things& t) { return Horizontal{t.a}; },
        [](const Things& t) { return Vertical{t.b}; },
        [](const Things& t) {
            return HorizontalPoints{pointOf(t.p), centreOf(t.c)};
        },
        [](const Things& t) {
            return VerticalPoints{pointOf(t.p), vertexOf(t.w, 2)};
        },
        [](const Things& t) {
            return Midpoint{pointOf(t.r), t.a};
        },
        [](const Things& t) {
            return Symmetric{pointOf(t.p), pointOf(t.q), t.axis};
        },
        [](const Things& t) {
            return SymmetricAboutPoint{pointOf(t.p), pointOf(t.q), pointOf(t.r)};
        },
        [](const Things& t) {
            return SymmetricCurves{t.c, t.d, t.axis};
        },
        [](const Things& t) {
            return Parallel{t.a, t.text};
        },
        [](const Things& t) {
            return Perpendicular{t.a, t.b};
        },
        [](const Things& t) {
            return PerpendicularAt{t.c, t.a, pointOf(t.p)};
        },
        [](const Things& t) {
            return PerpendicularEnds{endOf(t.a), startOf(t.b)};
        },
        [](const Things& t) {
            return Collinear{t.a, t.b};
        },
        [](const Things& t) {
            return Tangent{t.a, t.c};
        },
        [](const Things& t) {
            return Tangent{t.a, t.e};
        },
        [](const Things& t) {
            return TangentAt{t.c, t.d, pointOf(t.p)};
        },
        [](const Things& t) {
            return TangentEnds{endOf(t.b), startOf(t.k)};
        },
        [](const Things& t) {
            return TangentEnd{endOf(t.b), t.d};
        },
        [](const Things& t) {
            return Smooth{startOf(t.k), startOf(t.spline)};
        },
        [](const Things& t) {
            return Equal{t.a, t.b};
        },
        [](const Things& t) {
            return Equal{t.e, t.f};
        },
        [](const Things& t) {
            return MajorDiameter{t.diameter, t.e};
        },
        [](const Things& t) {
            return MinorDiameter{t.across, t.e};
        },
        [](const Things& t) {
            return Focus{pointOf(t.q), t.e};
        },
        [](const Things& t) {
            return Distance{pointOf(t.p), centreOf(t.c), 6};
        },
        [](const Things& t) {
            return PointCurveDistance{pointOf(t.p), t.a, 4};
        },
        [](const Things& t) {
            return CurveDistance{t.a, t.c, 2};
        },
        [](const Things& t) {
            return LineDistance{t.a, segmentOf(t.w, 0), 8};
        },
        [](const Things& t) {
            return DistanceX{pointOf(t.p), pointOf(t.q), -5};
        },
        [](const Things& t) {
            return DistanceY{pointOf(t.p), pointOf(t.q), 2};
        },
        [](const Things& t) {
            return Length{t.k, 7};
        },
        [](const Things& t) {
            return Radius{segmentOf(t.w, 1), 4};
        },
        [](const Things& t) {
            return Diameter{t.c, 7};
        },
        [](const Things& t) {
            return Direction{t.a, 0.3};
        },
        [](const Things& t) {
            return Sweep{t.k, 1.0};
        },
        [](const Things& t) {
            return Angle{t.a, t.b, 1.0};
        },
        [](const Things& t) {
            return AngleAt{t.a, t.c, pointOf(t.p), 0.8};
        },
    };
    return all;
}

TEST(ConstraintKinds, AreBroughtAboutOneByOne) {
    for (const Make& make : kinds()) {
        Things things;
        const Constraint kind = make(things);
        const auto id = things.s.add(kind);
        ASSERT_TRUE(id.isDone()) << nameOfKind(kind) << ": " << (id ? "" : id.error().message());
        EXPECT_GT(residual(things.s, id.value()).value(), 1e-3) << nameOfKind(kind) << " holds already";
        const SolveResult result = solve(things.s);
        EXPECT_EQ(result.ending, Ending::solved) << nameOfKind(kind) << "\n" << result.fullReport();
        EXPECT_LT(residual(things.s, id.value()).value(), 1e-8) << nameOfKind(kind);
    }
}

TEST(ConstraintKinds, ThatHoldWhereTheyAreHoldThings) {
    Things things;
    (void)things.s.add(FixedPoint{startOf(things.a)}).value();
    (void)things.s.add(FixedCurve{things.c}).value();
    EXPECT_EQ(solve(things.s).ending, Ending::unchanged);
    (void)things.s.add(Tangent{things.a, things.c}).value();
    ASSERT_TRUE(solve(things.s).isSolved());
    EXPECT_EQ(things.s.position(startOf(things.a)), (Vec2{0, 0}));
    EXPECT_EQ(things.s.values(things.c)[2], 3.0);
}

TEST(ConstraintKinds, AreAllTried) {
    Things things;
    std::set<std::size_t> tried{Constraint(FixedPoint{startOf(things.a)}).index(),
                                Constraint(FixedCurve{things.c}).index(), Constraint(OwnResidual{}).index()};
    for (const Make& make : kinds())
        tried.insert(make(things).index());
    EXPECT_EQ(tried.size(), std::variant_size_v<Constraint>);
}

TEST(ConstraintKinds, MeasureWhatTheirValueAsksFor) {
    for (const Make& make : kinds()) {
        Things things;
        const ConstraintId id = things.s.add(make(things)).value();
        if (!things.s.setDriving(id, false).isDone())
            continue;
        const double found = measure(things.s, id).value();
        ASSERT_TRUE(things.s.setDriving(id, true).isDone());
        ASSERT_TRUE(things.s.setValue(id, found).isDone()) << nameOfKind(things.s.constraint(id));
        // An angle at a point also puts the point on both curves.
        if (!std::holds_alternative<AngleAt>(things.s.constraint(id))) {
            EXPECT_LT(residual(things.s, id).value(), 1e-12) << nameOfKind(things.s.constraint(id));
        }
    }
}

}  // namespace
}  // namespace holdfast::solver
