#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using namespace curves;

TEST(LineEntity, MeasuresItsParameterFromTheStart) {
    const auto line = EntityAccess::makeLine({1, 1, 0}, {4, 5, 0});
    EXPECT_EQ(paramAt(*line, {1, 1, 0}), 0.0);
    EXPECT_DOUBLE_EQ(paramAt(*line, {2.5, 3, 0}), 2.5);
    EXPECT_EQ(paramAt(*line, {4, 5, 0}), 5.0);
    EXPECT_POINT(pointAt(*line, 2.5), {2.5, 3, 0});
    EXPECT_POINT(pointAt(*line, 5.0), {4, 5, 0});
}

TEST(LineEntity, AnswersTheNearestParameterOfAPointJustBesideIt) {
    const auto line = EntityAccess::makeLine({0, 0, 0}, {10, 0, 0});
    EXPECT_EQ(paramAt(*line, {4, 7e-7, 0}), 4.0);
    EXPECT_EQ(paramAt(*line, {-3e-7, 1e-7, 0}), 0.0);
    EXPECT_EQ(paramAt(*line, {10 + 1e-7, 0, 0}), 10.0);
}

TEST(LineEntity, RefusesAPointThatIsNotOnIt) {
    const auto line = EntityAccess::makeLine({0, 0, 0}, {10, 0, 0});
    for (const YxGePoint3d& off : {YxGePoint3d(4, 7, 0), YxGePoint3d(-3, 0, 0), YxGePoint3d(10.001, 0, 0)}) {
        double param = kUntouched;
        EXPECT_EQ(line->getParamAtPoint(off, param), Yxrt::eInvalidInput) << off;
        EXPECT_EQ(param, kUntouched);
    }
}

TEST(LineEntity, KnowsItsPointsFarFromTheOriginByTheirOwnSize) {
    const auto line = EntityAccess::makeLine({1e9, 1e9, 0}, {2e9, 1e9, 0});
    EXPECT_EQ(paramAt(*line, {1.5e9, 1e9 + 100, 0}), 5e8);
    EXPECT_EQ(paramAt(*line, {1.5e9, 1e9 + 1e5, 0}), kUntouched);
}

TEST(LineEntity, HasNoPointBeyondItsEnds) {
    const auto line = EntityAccess::makeLine({0, 0, 0}, {10, 0, 0});
    YxGePoint3d point = kUntouchedPoint;
    EXPECT_EQ(line->getPointAtParam(10.001, point), Yxrt::eOutOfRange);
    EXPECT_EQ(line->getPointAtParam(-0.001, point), Yxrt::eOutOfRange);
    EXPECT_EQ(line->getPointAtParam(std::numeric_limits<double>::quiet_NaN(), point), Yxrt::eOutOfRange);
    EXPECT_POINT(point, kUntouchedPoint);
}

TEST(LineEntity, OfNoLengthIsItsOnePoint) {
    const auto line = EntityAccess::makeLine({2, 2, 0}, {2, 2, 0});
    EXPECT_EQ(paramAt(*line, {2, 2, 0}), 0.0);
    EXPECT_POINT(pointAt(*line, 0.0), {2, 2, 0});
}

TEST(LineEntity, ExchangesItsEndsWhenReversed) {
    const auto line = EntityAccess::makeLine({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(line->reverseCurve(), Yxrt::eOk);
    EXPECT_POINT(line->startPoint(), {4, 5, 6});
    EXPECT_POINT(endOf(*line), {1, 2, 3});
    EXPECT_FALSE(line->isClosed());
}

TEST(LineEntity, RefusesAPointThatIsNoPoint) {
    const auto line = EntityAccess::makeLine({0, 0, 0}, {10, 0, 0});
    double param = kUntouched;
    EXPECT_EQ(line->getParamAtPoint({std::nan(""), 0, 0}, param), Yxrt::eInvalidInput);
    EXPECT_EQ(param, kUntouched);
}

TEST(LineEntity, AnswersNothingRatherThanANumberThatIsNone) {
    const auto line = EntityAccess::makeLine({-1.5e308, 0, 0}, {1.5e308, 0, 0});
    EXPECT_FALSE(std::isnan(paramAt(*line, {0, 1, 0})));
    EXPECT_FALSE(std::isnan(pointAt(*line, 1.0).x));
}

RC_GTEST_PROP(LineEntity, FindsTheParameterOfItsOwnPoints, (int x, int y, int u, int v, unsigned share)) {
    RC_PRE(x != u || y != v);
    const auto line = EntityAccess::makeLine({x / 1e6, y / 1e6, 0}, {u / 1e6, v / 1e6, 0});
    const double length = startOf(*line).distanceTo(endOf(*line));
    const double param = length * (share % 1001) / 1000.0;
    RC_ASSERT(std::abs(paramAt(*line, pointAt(*line, param)) - param) <= 1e-9);
}
