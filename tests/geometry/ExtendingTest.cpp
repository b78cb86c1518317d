#include "geometry/construction/Extending.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "geometry/GeometryError.h"
#include "geometry/construction/Splitting.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

/// Three spans of degree 3 with uneven knots; rational on demand.
SplineShape threeSpans(bool rational = false) {
    SplineShape spline;
    spline.degree = 3;
    spline.control = {{0, 0}, {2, 3}, {5, 3}, {7, 1}, {9, 2}, {10, 4}};
    spline.knots = {0, 0, 0, 0, 1, 2.5, 4, 4, 4, 4};
    spline.weights = rational ? std::vector<double>{1, 1.2, 0.9, 1.1, 1, 1.05} : std::vector<double>{};
    return spline;
}

TEST(WithEndAt, MovesEitherEndOfALineInOrOut) {
    const LineShape shape = line(0, 0, 10, 0);
    EXPECT_EQ(withEndAt(shape, CurveEnd::end, 14), Shape(line(0, 0, 14, 0)));
    EXPECT_EQ(withEndAt(shape, CurveEnd::end, 4), Shape(line(0, 0, 4, 0)));
    EXPECT_EQ(withEndAt(shape, CurveEnd::start, -3), Shape(line(-3, 0, 10, 0)));
    EXPECT_THROW(withEndAt(shape, CurveEnd::start, 10), GeometryError);
    EXPECT_THROW(withEndAt(shape, CurveEnd::end, -1), GeometryError);
}

TEST(WithEndAt, MovesTheBasePointOfARay) {
    EXPECT_EQ(withEndAt(RayShape{{1, 0}, {2, 0}}, CurveEnd::start, -4), Shape(RayShape{{-3, 0}, {2, 0}}));
}

TEST(WithEndAt, CutsAnEndAtInfinity) {
    EXPECT_EQ(withEndAt(RayShape{{1, 0}, {2, 0}}, CurveEnd::end, 4), Shape(line(1, 0, 5, 0)));
    EXPECT_EQ(withEndAt(XlineShape{{1, 0}, {2, 0}}, CurveEnd::start, 4), Shape(RayShape{{5, 0}, {2, 0}}));
}

TEST(WithEndAt, TakesAnArcsAngleInAnyTurn) {
    const ArcShape arc{{0, 0}, 1, 1, 2};
    const auto longer = std::get<ArcShape>(withEndAt(arc, CurveEnd::end, 0.5));
    EXPECT_DOUBLE_EQ(longer.endAngle, 0.5 + 2 * kPi);
    const auto earlier = std::get<ArcShape>(withEndAt(arc, CurveEnd::start, 0.5 + 4 * kPi));
    EXPECT_DOUBLE_EQ(earlier.startAngle, 0.5);
    EXPECT_DOUBLE_EQ(earlier.endAngle, 2.0);
    const auto whole = std::get<ArcShape>(withEndAt(arc, CurveEnd::end, 1.0));
    EXPECT_DOUBLE_EQ(whole.endAngle, 1.0 + 2 * kPi);
}

TEST(WithEndAt, MovesAnEllipticalArcsParameter) {
    const EllipticalArcShape arc{{0, 0}, {4, 0}, 0.5, 1, 2};
    const auto earlier = std::get<EllipticalArcShape>(withEndAt(arc, CurveEnd::start, 6.0));
    EXPECT_DOUBLE_EQ(earlier.startParam, 6.0 - 2 * kPi);
    EXPECT_DOUBLE_EQ(earlier.endParam, 2.0);
}

TEST(WithEndAt, LeadsAPolylineOnWithTheBulgeThatBelongsToIt) {
    const PolylineShape shape = polyline({{0, 0}, {10, 0}, {10, 10}}, {0, 1});
    const auto longer = std::get<PolylineShape>(withEndAt(shape, CurveEnd::end, 2.5));
    EXPECT_THAT(longer.vertices[2], IsAt(Vec2{5, 5}));
    EXPECT_DOUBLE_EQ(longer.bulges[1], std::tan(1.5 * kPi / 4));
    EXPECT_EQ(longer.ids, shape.ids);
    const auto earlier = std::get<PolylineShape>(withEndAt(shape, CurveEnd::start, -0.5));
    EXPECT_THAT(earlier.vertices[0], IsAt(Vec2{-5, 0}));
    EXPECT_EQ(earlier.vertices[1], shape.vertices[1]);
}

TEST(WithEndAt, ShortensAPolylineByWholeSegments) {
    const PolylineShape shape = polyline({{0, 0}, {10, 0}, {10, 10}, {20, 10}});
    const auto shorter = std::get<PolylineShape>(withEndAt(shape, CurveEnd::end, 0.5));
    EXPECT_EQ(shorter.vertices, (std::vector<Vec2>{{0, 0}, {5, 0}}));
    const auto later = std::get<PolylineShape>(withEndAt(shape, CurveEnd::start, 1.5));
    EXPECT_EQ(later.vertices, (std::vector<Vec2>{{10, 5}, {10, 10}, {20, 10}}));
    EXPECT_EQ(later.ids, (std::vector<int>{12, 13, 14}));
}

TEST(WithEndAt, RefusesToBendAPolylineRoundAFullTurn) {
    EXPECT_THROW(withEndAt(polyline({{0, 0}, {2, 0}}, {1}), CurveEnd::end, 2.0), GeometryError);
    EXPECT_THROW(withEndAt(polyline({{0, 0}, {2, 0}}, {1}), CurveEnd::end, 2.0 - 1e-12), GeometryError);
    EXPECT_THROW(withEndAt(square(1), CurveEnd::end, 2.0), GeometryError);
}

TEST(WithEndAt, ProlongsASplineWithoutTouchingWhatIsThere) {
    for (const bool rational : {false, true}) {
        const SplineShape spline = threeSpans(rational);
        const auto longer = std::get<SplineShape>(withEndAt(spline, CurveEnd::end, 4.8));
        EXPECT_EQ(longer.control.size(), spline.control.size());
        EXPECT_EQ(longer.knots, (std::vector<double>{0, 0, 0, 0, 1, 2.5, 4.8, 4.8, 4.8, 4.8}));
        for (double t = 0.0; t <= 4.0; t += 0.125) {
            EXPECT_THAT(pointAt(longer, t), IsNear(pointAt(spline, t), 1e-12)) << rational << " at " << t;
        }
        EXPECT_EQ(longer.control[0], spline.control[0]);
        EXPECT_EQ(longer.control[2], spline.control[2]);
        EXPECT_NEAR(curvatureAt(longer, 4.0 + 1e-9), curvatureAt(spline, 4.0), 1e-6);
    }
}

TEST(WithEndAt, ProlongsASplineBeforeItsStart) {
    for (const bool rational : {false, true}) {
        const SplineShape spline = threeSpans(rational);
        const auto longer = std::get<SplineShape>(withEndAt(spline, CurveEnd::start, -0.3));
        EXPECT_EQ(longer.knots, (std::vector<double>{-0.3, -0.3, -0.3, -0.3, 1, 2.5, 4, 4, 4, 4}));
        for (double t = 0.0; t <= 4.0; t += 0.125) {
            EXPECT_THAT(pointAt(longer, t), IsNear(pointAt(spline, t), 1e-12)) << rational << " at " << t;
        }
        EXPECT_THAT(longer.control[3], IsNear(spline.control[3], 1e-12));
    }
}

TEST(WithEndAt, KeepsControlPointsOfOtherSpansToTheLastBit) {
    RandomCurves random(62);
    for (int i = 0; i < 40; ++i) {
        const auto spline = std::get<SplineShape>(random.make(CurveKind::spline));
        const auto kept = static_cast<std::ptrdiff_t>(spline.control.size()) - spline.degree;
        const auto longer = std::get<SplineShape>(withEndAt(spline, CurveEnd::end, spline.knots.back() + 0.4));
        EXPECT_TRUE(std::equal(spline.control.begin(), spline.control.begin() + kept, longer.control.begin()));
        const auto earlier = std::get<SplineShape>(withEndAt(spline, CurveEnd::start, -0.4));
        EXPECT_TRUE(std::equal(spline.control.rbegin(), spline.control.rbegin() + kept, earlier.control.rbegin()));
    }
}

TEST(WithEndAt, FollowsTheCircleThatARationalSplineIs) {
    const auto arc = partOf(circleAsSpline(), 0.0, 1.0);
    const Shape longer = withEndAt(arc, CurveEnd::end, 1.4);
    EXPECT_NEAR(norm(*endPoint(longer)), 1.0, 1e-12);
    EXPECT_LT(endPoint(longer)->x, -0.1);
}

TEST(WithEndAt, AddsSpansWhereOneWouldNeedAWeightOfZero) {
    const auto arc = std::get<SplineShape>(partOf(circleAsSpline(), 0.0, 1.0));
    for (const double param : {3.0, -2.0}) {
        const CurveEnd end = param > 0.0 ? CurveEnd::end : CurveEnd::start;
        const auto longer = std::get<SplineShape>(withEndAt(arc, end, param));
        const ParamRange range = paramRange(longer);
        EXPECT_EQ(end == CurveEnd::end ? range.last : range.first, param);
        for (double t = range.first; t <= range.last; t += 0.0625) {
            EXPECT_NEAR(norm(pointAt(longer, t)), 1.0, 1e-12) << t;
        }
        EXPECT_THAT(pointAt(longer, 0.5), IsAt(pointAt(arc, 0.5)));
    }
}

TEST(WithEndAt, StopsBeforeARationalSplineRunsOffToInfinity) {
    EXPECT_THROW(withEndAt(bezier({{0, 0}, {1, 0}, {2, 1}}, {1, 0.8, 0.2}), CurveEnd::end, 4.0), GeometryError);
}

TEST(WithEndAt, ShortensASpline) {
    const Shape shorter = withEndAt(threeSpans(), CurveEnd::start, 1.25);
    EXPECT_DOUBLE_EQ(paramRange(shorter).first, 1.25);
    EXPECT_THROW(withEndAt(threeSpans(), CurveEnd::end, 0.0), GeometryError);
}

TEST(WithEndAt, RefusesClosedCurvesAndBadNumbers) {
    EXPECT_THROW(withEndAt(CircleShape{{0, 0}, 1}, CurveEnd::end, 1), GeometryError);
    EXPECT_THROW(withEndAt(line(0, 0, 1, 0), CurveEnd::end, std::nan("")), GeometryError);
}

TEST(ExtensionTo, FindsTheFirstMeetingAhead) {
    const PolylineShape fence = polyline({{15, -5}, {15, 5}, {20, 5}, {20, -5}});
    const auto found = extensionTo(line(0, 0, 10, 0), CurveEnd::end, fence);
    ASSERT_TRUE(found);
    EXPECT_THAT(found->point, IsAt(Vec2{15, 0}));
    EXPECT_DOUBLE_EQ(found->param, 15.0);
    EXPECT_DOUBLE_EQ(found->boundaryParam, 0.5);
    EXPECT_EQ(extensionTo(line(0, 0, 10, 0), CurveEnd::start, fence), std::nullopt);
}

TEST(ExtensionTo, PassesByWhatTheCurveHasAlreadyReached) {
    EXPECT_EQ(extensionTo(line(0, 0, 10, 0), CurveEnd::end, line(10, -5, 10, 5)), std::nullopt);
    EXPECT_EQ(extensionTo(line(0, 0, 10, 0), CurveEnd::end, line(5, -5, 5, 5)), std::nullopt);
}

TEST(ExtensionTo, MeetsAProlongedBoundaryOnlyOnDemand) {
    const LineShape above = line(15, 3, 15, 5);
    EXPECT_EQ(extensionTo(line(0, 0, 10, 0), CurveEnd::end, above), std::nullopt);
    const auto found = extensionTo(line(0, 0, 10, 0), CurveEnd::end, above, Extent::carrier);
    ASSERT_TRUE(found);
    EXPECT_DOUBLE_EQ(found->boundaryParam, -3.0);
}

TEST(ExtensionTo, FollowsAnArcBothWays) {
    const ArcShape arc{{0, 0}, 5, kPi / 4, kPi / 2};
    const XlineShape axis{{0, 0}, {1, 0}};
    const auto ahead = extensionTo(arc, CurveEnd::end, axis);
    const auto back = extensionTo(arc, CurveEnd::start, axis);
    ASSERT_TRUE(ahead && back);
    EXPECT_NEAR(ahead->param, kPi, 1e-12);
    EXPECT_NEAR(back->param, 0.0, 1e-12);
    EXPECT_THAT(*endPoint(withEndAt(arc, CurveEnd::end, ahead->param)), IsAt(Vec2{-5, 0}));
}

TEST(ExtensionTo, LeadsNoArcRoundToItsOwnOtherEnd) {
    const ArcShape arc{{0, 0}, 5, 0.0, kPi / 2};
    EXPECT_FALSE(extensionTo(arc, CurveEnd::end, line(4, 0, 6, 0)));
    EXPECT_FALSE(extensionTo(arc, CurveEnd::start, line(0, 4, 0, 6)));
    const EllipticalArcShape ellipse{{0, 0}, {5, 0}, 0.5, 0.0, kPi / 2};
    EXPECT_FALSE(extensionTo(ellipse, CurveEnd::end, line(4, 0, 6, 0)));
}

TEST(ExtensionTo, FollowsAnEllipticalArc) {
    const EllipticalArcShape arc{{0, 0}, {0, 6}, 0.5, 0.1, 1};
    const auto found = extensionTo(arc, CurveEnd::end, line(-9, 0, 0, 0));
    ASSERT_TRUE(found);
    EXPECT_THAT(found->point, IsAt(Vec2{-3, 0}));
}

TEST(ExtensionTo, FollowsTheOutermostSegmentOfAPolyline) {
    const PolylineShape shape = polyline({{0, 0}, {10, 0}, {10, 10}}, {0, 1});
    const auto ahead = extensionTo(shape, CurveEnd::end, line(0, 5, 8, 5));
    ASSERT_TRUE(ahead);
    EXPECT_NEAR(ahead->param, 2.5, 1e-12);
    const auto back = extensionTo(shape, CurveEnd::start, line(-7, -1, -7, 1));
    ASSERT_TRUE(back);
    EXPECT_NEAR(back->param, -0.7, 1e-12);
    EXPECT_THAT(*startPoint(withEndAt(shape, CurveEnd::start, back->param)), IsAt(Vec2{-7, 0}));
}

TEST(ExtensionTo, FollowsABentFirstSegmentBackwards) {
    const PolylineShape shape = polyline({{0, 0}, {10, 0}, {20, 0}}, {1});
    const auto found = extensionTo(shape, CurveEnd::start, line(5, 0, 5, 9));
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->param, -0.5, 1e-12);
    EXPECT_THAT(*startPoint(withEndAt(shape, CurveEnd::start, found->param)), IsAt(Vec2{5, 5}));
}

TEST(ExtensionTo, FollowsASplineOnItsOwnCurve) {
    for (const CurveEnd end : {CurveEnd::start, CurveEnd::end}) {
        const SplineShape spline = threeSpans();
        const LineShape boundary = end == CurveEnd::end ? line(9, 8, 14, 8) : line(-9, -1, 5, -1);
        const auto found = extensionTo(spline, end, boundary);
        ASSERT_TRUE(found);
        const Shape longer = withEndAt(spline, end, found->param);
        EXPECT_THAT(*(end == CurveEnd::end ? endPoint(longer) : startPoint(longer)), IsAt(found->point));
        EXPECT_THAT(pointAt(boundary, found->boundaryParam), IsAt(found->point));
    }
}

TEST(ExtensionTo, LeadsAStraightSplineFar) {
    const auto found = extensionTo(bezier({{0, 0}, {1, 0}}), CurveEnd::end, line(500, -1, 500, 1));
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->param, 500.0, 1e-9);
}

TEST(ExtensionTo, GivesUpASplineThatNeverMeets) {
    EXPECT_EQ(extensionTo(threeSpans(), CurveEnd::end, line(-50, -50, -40, -50)), std::nullopt);
    EXPECT_EQ(extensionTo(bezier({{0, 0}, {1, 0}, {2, 1}}, {1, 0.8, 0.2}), CurveEnd::end, line(-5, -5, -4, -5)),
              std::nullopt);
}

TEST(ExtensionTo, RefusesCurvesWithoutThatEnd) {
    EXPECT_THROW(extensionTo(CircleShape{{0, 0}, 1}, CurveEnd::end, line(0, 0, 1, 0)), GeometryError);
    EXPECT_THROW(extensionTo(RayShape{{0, 0}, {1, 0}}, CurveEnd::end, line(0, 0, 1, 0)), GeometryError);
    EXPECT_THROW(extensionTo(square(1), CurveEnd::start, line(0, 0, 1, 0)), GeometryError);
}

TEST(ExtendedTo, MovesAnEndToAPointOnTheCarrier) {
    EXPECT_EQ(extendedTo(line(0, 0, 10, 0), CurveEnd::end, {12, 0}), Shape(line(0, 0, 12, 0)));
    const auto arc = std::get<ArcShape>(extendedTo(ArcShape{{0, 0}, 5, 1, 2}, CurveEnd::start, {5, 0}));
    EXPECT_NEAR(arc.startAngle, 0.0, 1e-12);
    const auto path = std::get<PolylineShape>(extendedTo(polyline({{0, 0}, {5, 0}, {5, 5}}), CurveEnd::start, {-2, 0}));
    EXPECT_THAT(path.vertices[0], IsAt(Vec2{-2, 0}));
    EXPECT_THROW(extendedTo(line(0, 0, 10, 0), CurveEnd::end, {12, 1}), GeometryError);
}

TEST(ExtendedTo, LeadsASplineAlongItselfWhereThatPassesThePoint) {
    const SplineShape spline = threeSpans();
    const Vec2 ahead = *endPoint(withEndAt(spline, CurveEnd::end, 4.6));
    const auto longer = std::get<SplineShape>(extendedTo(spline, CurveEnd::end, ahead));
    EXPECT_EQ(longer.control.size(), spline.control.size());
    EXPECT_NEAR(longer.knots.back(), 4.6, 1e-9);
}

TEST(ExtendedTo, LeadsASplineElsewhereWithEqualCurvatureAtTheJoint) {
    const SplineShape spline = threeSpans();
    const Shape longer = extendedTo(spline, CurveEnd::end, {14, 3});
    EXPECT_THAT(*endPoint(longer), IsAt(Vec2{14, 3}));
    for (double t = 0.0; t <= 4.0; t += 0.25) {
        EXPECT_THAT(pointAt(longer, t), IsNear(pointAt(spline, t), 1e-9));
    }
    EXPECT_NEAR(curvatureAt(longer, 4.0 + 1e-9), curvatureAt(longer, 4.0 - 1e-9), 1e-5);
    const Shape earlier = extendedTo(spline, CurveEnd::start, {-3, 1});
    EXPECT_THAT(*startPoint(earlier), IsAt(Vec2{-3, 1}));
    EXPECT_THAT(*endPoint(earlier), IsAt(*endPoint(spline)));
}

TEST(Extension, OfEveryOpenKindEndsOnTheBoundary) {
    RandomCurves random(61);
    const CircleShape fence{{0, 0}, 40};
    int met = 0;
    for (const CurveKind kind : {CurveKind::line, CurveKind::spline, CurveKind::polyline}) {
        for (int i = 0; i < 20; ++i) {
            const Shape shape = random.make(kind);
            if (isClosed(shape)) {
                continue;
            }
            if (const auto found = extensionTo(shape, CurveEnd::end, fence)) {
                ++met;
                const Vec2 end = *endPoint(withEndAt(shape, CurveEnd::end, found->param));
                EXPECT_NEAR(norm(end), 40.0, 1e-7) << static_cast<int>(kind) << " curve " << i;
            }
        }
    }
    EXPECT_GT(met, 30);
}

}  // namespace
}  // namespace holdfast::geometry
