#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <yxbase/YxGeEllipArc3d.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using namespace curves;

TEST(EllipseEntity, HasAxesAsLongAsItsRadii) {
    const auto ellipse = EntityAccess::makeEllipse({.centre = {1, 1, 0}, .majorAxis = {0, 4, 0}, .ratio = 0.5});
    EXPECT_TRUE(ellipse->majorAxis().isEqualTo({0, 4, 0}));
    EXPECT_TRUE(ellipse->minorAxis().isEqualTo({-2, 0, 0}));
    EXPECT_EQ(ellipse->radiusRatio(), 0.5);
}

TEST(EllipseEntity, IsClosedWhenItsParametersSpanATurn) {
    EXPECT_TRUE(EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5})->isClosed());
    EXPECT_TRUE(EntityAccess::makeEllipse({.startAngle = 1, .endAngle = 1})->isClosed());
    EXPECT_FALSE(EntityAccess::makeEllipse({.startAngle = 1, .endAngle = 7})->isClosed());
}

TEST(EllipseEntity, TakesItsAnglesAsParameters) {
    const auto arc =
        EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5, .startAngle = 0, .endAngle = kPi / 4});
    EXPECT_POINT(startOf(*arc), {4, 0, 0});
    EXPECT_POINT(endOf(*arc), {2 * std::numbers::sqrt2, std::numbers::sqrt2, 0});
    EXPECT_NEAR(paramAt(*arc, {4 * std::cos(0.5), 2 * std::sin(0.5), 0}), 0.5, 1e-12);
}

TEST(EllipseEntity, AnswersTheNearestPointAndNotTheOneInTheSameDirection) {
    const auto ellipse = EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5});
    // The normal of the ellipse at parameter 0.5 is <2 cos 0.5, 4 sin 0.5>.
    const double out = 1e-7;
    const YxGePoint3d outside((4 + 2 * out) * std::cos(0.5), (2 + 4 * out) * std::sin(0.5), 0);
    EXPECT_NEAR(paramAt(*ellipse, outside), 0.5, 1e-10);
}

TEST(EllipseEntity, RefusesAPointThatIsNotOnIt) {
    const auto ellipse = EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5});
    EXPECT_EQ(paramAt(*ellipse, {4.1, 0, 0}), kUntouched);
    EXPECT_EQ(paramAt(*ellipse, {0, 0, 0}), kUntouched);
}

TEST(EllipseEntity, FindsPointsOnBothSidesOfItsTipHoweverFlat) {
    const auto ellipse = EntityAccess::makeEllipse({.majorAxis = {5, 0, 0}, .ratio = 0.001});
    for (const double t : {0.0004, 0.01, 3.1411, 3.142, 6.28})
        EXPECT_NEAR(paramAt(*ellipse, pointAt(*ellipse, t)), t, 1e-11);
}

TEST(EllipseEntity, HasNoParameterBeyondItsEnds) {
    const auto arc = EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5, .startAngle = 1, .endAngle = 2});
    EXPECT_EQ(paramAt(*arc, pointAt(*arc, 1.0) + YxGeVector3d(1e-7, 0, 0)), 1.0);
    EXPECT_EQ(paramAt(*arc, pointAt(*arc, 2.0) - YxGeVector3d(1e-7, 0, 0)), 2.0);
    EXPECT_EQ(paramAt(*arc, {4, 0, 0}), kUntouched);
    EXPECT_POINT(pointAt(*arc, 0.5), kUntouchedPoint);
}

TEST(EllipseEntity, AnswersItsStartForTheLastParameterOfATurn) {
    const auto ellipse = EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5});
    EXPECT_EQ(paramAt(*ellipse, {4, 0, 0}), 0.0);
    EXPECT_EQ(paramAt(*ellipse, pointAt(*ellipse, 2 * kPi)), 0.0);
}

TEST(EllipseEntity, ExchangesItsEndsWhenReversed) {
    const auto arc =
        EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.5, .startAngle = 1, .endAngle = 2.5});
    EXPECT_EQ(arc->reverseCurve(), Yxrt::eOk);
    EXPECT_POINT(startOf(*arc), {4 * std::cos(2.5), 2 * std::sin(2.5), 0});
    EXPECT_POINT(endOf(*arc), {4 * std::cos(1.0), 2 * std::sin(1.0), 0});
    EXPECT_TRUE(arc->minorAxis().isEqualTo({0, -2, 0}));
}

RC_GTEST_PROP(EllipseEntity, AgreesWithTheGeometricArcOfTheSameData, (int start, int end)) {
    const double from = start % 10000 / 1000.0, to = end % 10000 / 1000.0;
    const auto ellipse = EntityAccess::makeEllipse(
        {.centre = {1, 2, 0}, .majorAxis = {3, 4, 0}, .ratio = 0.4, .startAngle = from, .endAngle = to});
    const YxGeEllipArc3d same({1, 2, 0}, ellipse->majorAxis(), ellipse->minorAxis(), 5, 2, from, to);
    RC_ASSERT(startOf(*ellipse).isEqualTo(same.startPoint()));
    RC_ASSERT(endOf(*ellipse).isEqualTo(same.endPoint()));
}

RC_GTEST_PROP(EllipseEntity, FindsTheParameterOfItsOwnPoints, (unsigned from, unsigned share, unsigned flatness)) {
    const double start = from % 6283 / 1000.0;
    const auto arc = EntityAccess::makeEllipse({.centre = {1, 2, 0},
                                                .majorAxis = {3, 4, 0},
                                                .ratio = (flatness % 100 + 1) / 100.0,
                                                .startAngle = start,
                                                .endAngle = start + 5});
    const double param = start + 5.0 * (share % 1001) / 1000.0;
    RC_ASSERT(std::abs(paramAt(*arc, pointAt(*arc, param)) - param) <= 1e-9);
}

RC_GTEST_PROP(EllipseEntity, HasNoPointNearerThanTheOneItAnswers, (int x, int y)) {
    const auto ellipse = EntityAccess::makeEllipse({.majorAxis = {4, 0, 0}, .ratio = 0.1});
    const YxGePoint3d target(x % 10000 / 1000.0, y % 10000 / 1000.0, 0);
    const double nearest = pointAt(*ellipse, EntityAccess::nearestAngle(*ellipse, target)).distanceTo(target);
    for (int i = 0; i < 2000; ++i)
        RC_ASSERT(pointAt(*ellipse, 2 * kPi * i / 2000).distanceTo(target) >= nearest - 1e-9);
}
