#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <yxbase/YxGeCircArc3d.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using namespace curves;

TEST(ArcEntity, RunsFromItsStartAngleToItsEndAngle) {
    const auto arc = EntityAccess::makeArc({.centre = {1, 2, 0}, .radius = 2, .startAngle = 0, .endAngle = kPi / 2});
    EXPECT_POINT(startOf(*arc), {3, 2, 0});
    EXPECT_POINT(endOf(*arc), {1, 4, 0});
    EXPECT_FALSE(arc->isClosed());
}

TEST(ArcEntity, KeepsItsAnglesAsTheyWereGiven) {
    const auto arc = EntityAccess::makeArc({.startAngle = 5.5, .endAngle = 7.25});
    EXPECT_EQ(arc->startAngle(), 5.5);
    EXPECT_EQ(arc->endAngle(), 7.25);
    const auto wrapped = EntityAccess::makeArc({.startAngle = 5.5, .endAngle = 0.5});
    EXPECT_EQ(wrapped->endAngle(), 0.5);
}

TEST(ArcEntity, RunsFromMinusXTowardsYWhenItsNormalPointsDown) {
    const auto arc = EntityAccess::makeArc({.radius = 2, .startAngle = 0, .endAngle = kPi / 2, .normal = {0, 0, -1}});
    EXPECT_POINT(startOf(*arc), {-2, 0, 0});
    EXPECT_POINT(endOf(*arc), {0, 2, 0});
    EXPECT_DOUBLE_EQ(paramAt(*arc, {-std::numbers::sqrt2, std::numbers::sqrt2, 0}), kPi / 4);
}

TEST(ArcEntity, MeasuresItsParameterOnFromTheStartAngle) {
    const auto arc = EntityAccess::makeArc({.startAngle = 1.5 * kPi, .endAngle = 2.5 * kPi});
    EXPECT_DOUBLE_EQ(paramAt(*arc, {1, 0, 0}), 2 * kPi);
    EXPECT_EQ(paramAt(*arc, {0, -1, 0}), 1.5 * kPi);
    EXPECT_EQ(paramAt(*arc, {0, 1, 0}), 2.5 * kPi);
    EXPECT_POINT(pointAt(*arc, 2 * kPi), {1, 0, 0});
    EXPECT_POINT(pointAt(*arc, 0.0), {1, 0, 0});
}

TEST(ArcEntity, AnswersTheNearerEndForAPointJustBeyondIt) {
    const auto arc = EntityAccess::makeArc({.startAngle = 0, .endAngle = kPi / 2});
    EXPECT_EQ(paramAt(*arc, {1, -1e-7, 0}), 0.0);
    EXPECT_EQ(paramAt(*arc, {-1e-7, 1, 0}), kPi / 2);
}

TEST(ArcEntity, RefusesAPointThatIsNotOnIt) {
    const auto arc = EntityAccess::makeArc({.startAngle = 0, .endAngle = kPi / 2});
    for (const YxGePoint3d& off : {YxGePoint3d(1, -0.1, 0), YxGePoint3d(3, 0, 0), YxGePoint3d(1, 0, 0.1)})
        EXPECT_EQ(paramAt(*arc, off), kUntouched) << off;
}

TEST(ArcEntity, HasNoPointOutsideItsAngles) {
    const auto arc = EntityAccess::makeArc({.startAngle = 0, .endAngle = kPi / 2});
    YxGePoint3d point = kUntouchedPoint;
    EXPECT_EQ(arc->getPointAtParam(kPi, point), Yxrt::eOutOfRange);
    EXPECT_EQ(arc->getPointAtParam(-0.01, point), Yxrt::eOutOfRange);
    EXPECT_POINT(point, kUntouchedPoint);
}

TEST(ArcEntity, HasNoPointAtAParameterThatIsNoNumber) {
    const auto arc = EntityAccess::makeArc({.startAngle = 0, .endAngle = kPi / 2});
    EXPECT_POINT(pointAt(*arc, std::nan("")), kUntouchedPoint);
    EXPECT_POINT(pointAt(*arc, HUGE_VAL), kUntouchedPoint);
}

TEST(ArcEntity, OfEqualAnglesIsAFullTurn) {
    const auto arc = EntityAccess::makeArc({.startAngle = 0.5, .endAngle = 0.5});
    EXPECT_POINT(pointAt(*arc, 0.5 + kPi), {-std::cos(0.5), -std::sin(0.5), 0});
    const auto rounded = EntityAccess::makeArc({.startAngle = 0.3, .endAngle = std::nextafter(0.3 + 2 * kPi, 9.0)});
    EXPECT_POINT(pointAt(*rounded, 0.3 + kPi), {-std::cos(0.3), -std::sin(0.3), 0});
}

TEST(ArcEntity, ExchangesItsEndsWhenReversed) {
    const auto arc = EntityAccess::makeArc({.centre = {1, 2, 0}, .radius = 2, .startAngle = 0.2, .endAngle = 1.1});
    const YxGePoint3d start = startOf(*arc), end = endOf(*arc);
    EXPECT_EQ(arc->reverseCurve(), Yxrt::eOk);
    EXPECT_POINT(startOf(*arc), end);
    EXPECT_POINT(endOf(*arc), start);
    EXPECT_TRUE(arc->normal().isEqualTo({0, 0, -1}));
    EXPECT_DOUBLE_EQ(arc->startAngle(), kPi - 1.1);
    EXPECT_DOUBLE_EQ(arc->endAngle(), kPi - 0.2);
}

RC_GTEST_PROP(ArcEntity, ReversedTwiceIsTheSameArc, (unsigned from, unsigned sweep, int x, int y, int z)) {
    RC_PRE(x != 0 || y != 0 || z != 0);
    const double start = from % 6283 / 1000.0;
    const auto arc = EntityAccess::makeArc({.centre = {5, 6, 7},
                                            .radius = 2,
                                            .startAngle = start,
                                            .endAngle = start + (sweep % 6000 + 1) / 1000.0,
                                            .normal = YxGeVector3d(x, y, z)});
    const auto copy = copyOf(*arc);
    copy->reverseCurve();
    RC_ASSERT(startOf(*copy).isEqualTo(endOf(*arc)));
    RC_ASSERT(endOf(*copy).isEqualTo(startOf(*arc)));
    copy->reverseCurve();
    RC_ASSERT(startOf(*copy).isEqualTo(startOf(*arc)));
    RC_ASSERT(copy->normal().isEqualTo(arc->normal()));
}

RC_GTEST_PROP(ArcEntity, AgreesWithTheGeometricArcOfTheSameData, (int start, int end, bool down)) {
    const double side = down ? -1.0 : 1.0;
    const double from = start % 10000 / 1000.0, to = end % 10000 / 1000.0;
    const auto arc = EntityAccess::makeArc(
        {.centre = {3, 4, 0}, .radius = 5, .startAngle = from, .endAngle = to, .normal = {0, 0, side}});
    const YxGeCircArc3d same({3, 4, 0}, {0, 0, side}, {side, 0, 0}, 5, from, to);
    RC_ASSERT(startOf(*arc).isEqualTo(same.startPoint()));
    RC_ASSERT(endOf(*arc).isEqualTo(same.endPoint()));
}

RC_GTEST_PROP(ArcEntity, FindsTheParameterOfItsOwnPoints, (unsigned from, unsigned share, bool down)) {
    const double start = from % 6283 / 1000.0;
    const auto arc = EntityAccess::makeArc({.centre = {3, 4, 0},
                                            .radius = 5,
                                            .startAngle = start,
                                            .endAngle = start + 4,
                                            .normal = {0, 0, down ? -1. : 1.}});
    const double param = start + 4.0 * (share % 1001) / 1000.0;
    RC_ASSERT(std::abs(paramAt(*arc, pointAt(*arc, param)) - param) <= 1e-10);
}
