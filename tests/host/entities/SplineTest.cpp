#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "host/model/entities/EntityAccess.h"
#include "host/src/yxdb/curves/SplineView.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using holdfast::SplineData;
using namespace curves;

namespace {

/// A Bezier curve of degree 3.
SplineData bezier() {
    return {.control = {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}}, .knots = {0, 0, 0, 0, 1, 1, 1, 1}, .weights = {}};
}

/// A quarter of the unit circle about the origin, from (1, 0) to (0, 1).
SplineData quarterCircle() {
    return {.degree = 2,
            .control = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
            .knots = {0, 0, 0, 1, 1, 1},
            .weights = {1, std::sqrt(0.5), 1}};
}

/// A closed curve about the origin without a corner; one period of simple knots.
SplineData ring(int degree = 3) {
    return {.degree = degree,
            .periodic = true,
            .control = {{2, 0, 0}, {1, 2, 0}, {-1, 2, 0}, {-2, 0, 0}, {0, -3, 0}},
            .knots = {0, 1, 2.5, 3, 4, 5},
            .weights = {}};
}

/// Intervals of different lengths, a double knot, weights.
SplineData uneven() {
    return {.control = {{0, 0, 0}, {1, 4, 0}, {3, -2, 1}, {5, 5, 0}, {6, 0, 0}, {8, 1, 0}, {9, 4, 0}},
            .knots = {-1, -1, -1, -1, 0.5, 2, 2, 3, 3, 3, 3},
            .weights = {1, 2, 0.5, 1, 3, 1, 1}};
}

/// Of the point of the spline that is nearest, however far away.
double nearestParam(const SplineData& data, const YxGePoint3d& point) {
    return holdfast::SplineView(data.degree, data.periodic, data.control, data.knots, data.weights).nearestParam(point);
}

/// The basis functions' own recursion, N(i, p, t); the last interval is closed at its end.
double basis(const std::vector<double>& knots, std::size_t i, int degree, double t) {
    if (degree == 0) {
        const bool last = t == knots.back() && knots[i] < t && knots[i + 1] == t;
        return last || (knots[i] <= t && t < knots[i + 1]) ? 1.0 : 0.0;
    }
    const auto share = [&](double from, double to) { return to > from ? (t - from) / (to - from) : 0.0; };
    const auto p = static_cast<std::size_t>(degree);
    return share(knots[i], knots[i + p]) * basis(knots, i, degree - 1, t) +
           (knots[i + p + 1] > knots[i + 1] ? 1.0 - share(knots[i + 1], knots[i + p + 1]) : 0.0) *
               basis(knots, i + 1, degree - 1, t);
}

YxGePoint3d byBasis(const SplineData& data, double t) {
    double x = 0, y = 0, z = 0, w = 0;
    for (std::size_t i = 0; i < data.control.size(); ++i) {
        const double share = basis(data.knots, i, data.degree, t) * (data.weights.empty() ? 1.0 : data.weights[i]);
        x += share * data.control[i].x;
        y += share * data.control[i].y;
        z += share * data.control[i].z;
        w += share;
    }
    return {x / w, y / w, z / w};
}

/// The ring written out as a spline that is not periodic.
SplineData unrolled(const SplineData& ring) {
    SplineData open = ring;
    open.periodic = false;
    const double period = ring.knots.back() - ring.knots.front();
    const std::size_t n = ring.control.size();
    open.knots.clear();
    for (std::size_t i = n - static_cast<std::size_t>(ring.degree); i < n; ++i)
        open.knots.push_back(ring.knots[i] - period);
    open.knots.insert(open.knots.end(), ring.knots.begin(), ring.knots.end());
    for (int i = 0; i < ring.degree; ++i) {
        open.knots.push_back(ring.knots[static_cast<std::size_t>(i) + 1] + period);
        open.control.push_back(ring.control[static_cast<std::size_t>(i)]);
    }
    return open;
}

}  // namespace

TEST(SplineEntity, RunsFromItsFirstToItsLastControlPoint) {
    const auto spline = EntityAccess::makeSpline(bezier());
    EXPECT_POINT(startOf(*spline), {0, 0, 0});
    EXPECT_POINT(endOf(*spline), {4, 0, 0});
    EXPECT_POINT(pointAt(*spline, 0.5), {2, 1.5, 0});
    EXPECT_FALSE(spline->isClosed());
}

TEST(SplineEntity, AnswersItsControlPoints) {
    const auto spline = EntityAccess::makeSpline(bezier());
    YxGePoint3d point = kUntouchedPoint;
    EXPECT_EQ(spline->numControlPoints(), 4);
    EXPECT_EQ(spline->getControlPointAt(-1, point), Yxrt::eOutOfRange);
    EXPECT_EQ(spline->getControlPointAt(4, point), Yxrt::eOutOfRange);
    EXPECT_POINT(point, kUntouchedPoint);
    EXPECT_EQ(spline->getControlPointAt(1, point), Yxrt::eOk);
    EXPECT_POINT(point, {1, 2, 0});
}

TEST(SplinePoints, OfWeightsLieOnTheCircle) {
    const auto spline = EntityAccess::makeSpline(quarterCircle());
    for (const double t : {0.0, 0.1, 0.35, 0.5, 0.99, 1.0})
        EXPECT_NEAR(pointAt(*spline, t).distanceTo(YxGePoint3d::kOrigin), 1.0, 1e-15);
    EXPECT_POINT(pointAt(*spline, 0.5), {std::sqrt(0.5), std::sqrt(0.5), 0});
}

TEST(SplinePoints, AgreeWithTheBasisFunctions) {
    const SplineData data = uneven();
    const auto spline = EntityAccess::makeSpline(data);
    for (int i = 0; i <= 400; ++i) {
        const double t = -1 + 4 * i / 400.0;
        EXPECT_POINT(pointAt(*spline, t), byBasis(data, t)) << t;
    }
}

TEST(SplinePoints, OfAnUnclampedSplineStartAtTheFirstFullInterval) {
    const SplineData data{.degree = 2, .control = bezier().control, .knots = {0, 1, 2, 3, 4, 5, 6}, .weights = {}};
    const auto spline = EntityAccess::makeSpline(data);
    EXPECT_POINT(startOf(*spline), byBasis(data, 2));
    EXPECT_POINT(startOf(*spline), {0.5, 1, 0});
    EXPECT_POINT(endOf(*spline), {3.5, 1, 0});
    EXPECT_POINT(pointAt(*spline, 1.9), kUntouchedPoint);
}

TEST(SplinePoints, OutsideTheRangeAreRefused) {
    const auto spline = EntityAccess::makeSpline(bezier());
    YxGePoint3d point = kUntouchedPoint;
    EXPECT_EQ(spline->getPointAtParam(1.001, point), Yxrt::eOutOfRange);
    EXPECT_EQ(spline->getPointAtParam(std::nan(""), point), Yxrt::eOutOfRange);
    EXPECT_POINT(point, kUntouchedPoint);
    EXPECT_POINT(pointAt(*spline, 1 + 1e-13), {4, 0, 0});
}

TEST(PeriodicSpline, IsClosedAndSmoothAtItsSeam) {
    const auto spline = EntityAccess::makeSpline(ring());
    EXPECT_TRUE(spline->isClosed());
    EXPECT_POINT(startOf(*spline), endOf(*spline));
    const YxGeVector3d before = pointAt(*spline, 5) - pointAt(*spline, 5 - 1e-6);
    const YxGeVector3d after = pointAt(*spline, 1e-6) - pointAt(*spline, 0);
    EXPECT_LT((before - after).length(), 1e-10);
}

TEST(PeriodicSpline, WrapsItsParameter) {
    const auto spline = EntityAccess::makeSpline(ring());
    EXPECT_POINT(pointAt(*spline, 6.25), pointAt(*spline, 1.25));
    EXPECT_POINT(pointAt(*spline, -1.5), pointAt(*spline, 3.5));
}

TEST(PeriodicSpline, IsTheSplineWithItsKnotsAndPointsWrittenOut) {
    for (const int degree : {1, 2, 3, 4, 5}) {
        const auto periodic = EntityAccess::makeSpline(ring(degree));
        const SplineData open = unrolled(ring(degree));
        const auto written = EntityAccess::makeSpline(open);
        for (int i = 0; i <= 100; ++i) {
            EXPECT_POINT(pointAt(*periodic, i / 20.0), pointAt(*written, i / 20.0)) << degree << ' ' << i;
            EXPECT_POINT(pointAt(*written, i / 20.0), byBasis(open, i / 20.0)) << degree << ' ' << i;
        }
    }
}

TEST(PeriodicSpline, MayHaveFewerControlPointsThanItsDegree) {
    const auto spline = EntityAccess::makeSpline(
        {.degree = 3, .periodic = true, .control = {{1, 0, 0}, {-1, 1, 0}}, .knots = {0, 1, 2}, .weights = {}});
    EXPECT_POINT(startOf(*spline), endOf(*spline));
    EXPECT_POINT(pointAt(*spline, 0.5), pointAt(*spline, 2.5));
}

TEST(ClosedSpline, NeedNotBePeriodic) {
    SplineData data = bezier();
    data.control.back() = data.control.front();
    EXPECT_TRUE(EntityAccess::makeSpline(data)->isClosed());
}

TEST(SplineParameter, IsFoundForPointsOnTheCurve) {
    const auto spline = EntityAccess::makeSpline(uneven());
    for (int i = 0; i <= 400; ++i) {
        const double t = -1 + 4 * i / 400.0;
        EXPECT_NEAR(paramAt(*spline, pointAt(*spline, t)), t, 1e-12) << i;
    }
}

TEST(SplineParameter, AtTheEndsIsTheEndOfTheRange) {
    const auto spline = EntityAccess::makeSpline(uneven());
    EXPECT_EQ(paramAt(*spline, {1e-11, 0, 0}), -1.0);
    EXPECT_EQ(paramAt(*spline, {9, 4, 0}), 3.0);
    EXPECT_EQ(nearestParam(uneven(), {-5, -9, 0}), -1.0);
    EXPECT_EQ(paramAt(*spline, {-5, -9, 0}), kUntouched);
    const auto periodic = EntityAccess::makeSpline(ring());
    EXPECT_EQ(paramAt(*periodic, pointAt(*periodic, 5)), 0.0);
}

TEST(SplineParameter, IsFoundWhereTheCurveStandsStill) {
    // Three equal control points: the curve starts with speed 0.
    const auto spline = EntityAccess::makeSpline(
        {.control = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {8, 0, 0}}, .knots = {0, 0, 0, 0, 1, 1, 1, 1}, .weights = {}});
    EXPECT_EQ(paramAt(*spline, {-1e-7, 0, 0}), 0.0);
    EXPECT_NEAR(paramAt(*spline, {1, 0, 0}), 0.5, 1e-12);
    EXPECT_NEAR(paramAt(*spline, {1e-6, 0, 0}), 0.005, 1e-9);
}

TEST(SplineParameter, IsFoundJustBesideAPlaceWhereTheCurveTurnsBack) {
    // On a straight line to y = 1.0417 at t = 0.41667 and back: both ways pass y = 1.0406.
    const auto spline = EntityAccess::makeSpline(
        {.degree = 2, .control = {{0, 0, 0}, {0, 2.5, 0}, {0, -1, 0}}, .knots = {0, 0, 0, 1, 1, 1}});
    const YxGePoint3d target = pointAt(*spline, 0.43);
    EXPECT_POINT(pointAt(*spline, paramAt(*spline, target)), target);
}

TEST(SplineParameter, IsFoundFarFromTheOrigin) {
    SplineData data = uneven();
    for (YxGePoint3d& point : data.control)
        point = point + YxGeVector3d(1e6, -2e6, 0);
    const auto spline = EntityAccess::makeSpline(data);
    EXPECT_NEAR(paramAt(*spline, pointAt(*spline, 0.7)), 0.7, 1e-8);
}

TEST(SplineParameter, OfTheCentreOfACircleIsTheFirst) {
    EXPECT_EQ(nearestParam(quarterCircle(), {0, 0, 0}), 0.0);
    EXPECT_EQ(paramAt(*EntityAccess::makeSpline(quarterCircle()), {0, 0, 0}), kUntouched);
}

TEST(SplineParameter, OfACurveThatIsOnePointIsItsStart) {
    const auto spline = EntityAccess::makeSpline(
        {.degree = 1, .control = {{2, 2, 0}, {2, 2, 0}}, .knots = {3, 3, 4, 4}, .weights = {}});
    EXPECT_EQ(paramAt(*spline, {5, 5, 0}), kUntouched);
    EXPECT_EQ(paramAt(*spline, {2, 2, 0}), 3.0);
}

TEST(SplineReversal, ExchangesTheEndsAndMirrorsTheParameter) {
    for (const SplineData& data : {uneven(), ring(), ring(2), quarterCircle()}) {
        const auto spline = EntityAccess::makeSpline(data);
        const auto reversed = copyOf(*spline);
        EXPECT_EQ(reversed->reverseCurve(), Yxrt::eOk);
        const double first = data.periodic ? 0 : data.knots.front();
        const double last = data.knots.back();
        for (int i = 0; i <= 50; ++i) {
            const double t = first + (last - first) * i / 50;
            EXPECT_POINT(pointAt(*reversed, first + last - t), pointAt(*spline, t)) << t;
        }
    }
}

TEST(SplineReversal, ReversesControlPointsAndWeights) {
    const auto spline = EntityAccess::makeSpline(uneven());
    spline->reverseCurve();
    const SplineData now = EntityAccess::spline(*spline);
    EXPECT_EQ(now.weights, (std::vector<double>{1, 1, 3, 1, 0.5, 2, 1}));
    EXPECT_EQ(now.knots, (std::vector<double>{-1, -1, -1, -1, 0, 0, 1.5, 3, 3, 3, 3}));
    EXPECT_POINT(now.control[0], {9, 4, 0});
}

TEST(SplineReversal, TwiceIsTheSameSpline) {
    for (const SplineData& data : {uneven(), ring(), ring(5)}) {
        const auto spline = EntityAccess::makeSpline(data);
        spline->reverseCurve();
        spline->reverseCurve();
        const SplineData now = EntityAccess::spline(*spline);
        EXPECT_EQ(now.knots, data.knots);
        for (std::size_t i = 0; i < data.control.size(); ++i)
            EXPECT_POINT(now.control[i], data.control[i]);
    }
}

RC_GTEST_PROP(SplineParameter, HasNoNearerPoint, (int x, int y, bool periodic)) {
    const auto spline = EntityAccess::makeSpline(periodic ? ring() : uneven());
    const double first = periodic ? 0 : -1, last = periodic ? 5 : 3;
    const YxGePoint3d target(x % 10000 / 1000.0, y % 10000 / 1000.0, 0);
    const double param = nearestParam(periodic ? ring() : uneven(), target);
    const double nearest = pointAt(*spline, param).distanceTo(target);
    for (int i = 0; i <= 1000; ++i)
        RC_ASSERT(pointAt(*spline, first + (last - first) * i / 1000).distanceTo(target) >= nearest - 1e-9);
}

RC_GTEST_PROP(SplineParameter, IsFoundOnAnySpline,
              (const std::vector<std::pair<int, int>>& points, int degree, unsigned share)) {
    const int p = std::abs(degree % 5) + 1;
    RC_PRE(points.size() > static_cast<std::size_t>(p));
    SplineData data{.degree = p, .control = {}, .knots = {}, .weights = {}};
    for (const auto& [x, y] : points)
        data.control.push_back({x % 1000 / 10.0, y % 1000 / 10.0, 0});
    for (std::size_t i = 0; i < points.size() + static_cast<std::size_t>(p) + 1; ++i)
        data.knots.push_back(std::clamp(static_cast<double>(i) - p, 0.0, static_cast<double>(points.size()) - p));
    if (share % 2 == 0)
        for (const auto& [x, y] : points)
            data.weights.push_back(std::exp((x % 7 + y % 7) / 4.0));
    const auto spline = EntityAccess::makeSpline(data);
    const double t = data.knots.back() * (share % 1001) / 1000.0;
    const YxGePoint3d target = pointAt(*spline, t);
    RC_ASSERT(pointAt(*spline, paramAt(*spline, target)).distanceTo(target) <= 1e-9);
}
