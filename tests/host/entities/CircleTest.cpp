#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using namespace curves;

TEST(CircleEntity, BeginsAndEndsAtAngleZero) {
    const auto circle = EntityAccess::makeCircle({.centre = {1, 2, 0}, .radius = 3});
    EXPECT_POINT(startOf(*circle), {4, 2, 0});
    EXPECT_POINT(endOf(*circle), {4, 2, 0});
    EXPECT_TRUE(circle->isClosed());
}

TEST(CircleEntity, MeasuresItsParameterAsAnAngleWithinOneTurn) {
    const auto circle = EntityAccess::makeCircle({.centre = {1, 2, 0}, .radius = 3});
    EXPECT_DOUBLE_EQ(paramAt(*circle, {1, 5, 0}), kPi / 2);
    EXPECT_DOUBLE_EQ(paramAt(*circle, {1, -1, 0}), 3 * kPi / 2);
    EXPECT_POINT(pointAt(*circle, 5 * kPi / 2), {1, 5, 0});
}

TEST(CircleEntity, AnswersZeroJustBelowAngleZero) {
    const auto circle = EntityAccess::makeCircle({.radius = 3});
    EXPECT_EQ(paramAt(*circle, {3, -1e-12, 0}), 0.0);
    EXPECT_EQ(paramAt(*circle, {3, -1e-300, 0}), 0.0);
}

TEST(CircleEntity, RefusesAPointThatIsNotOnIt) {
    const auto circle = EntityAccess::makeCircle({.centre = {1, 2, 0}});
    EXPECT_EQ(paramAt(*circle, {1, 2, 0}), kUntouched);
    EXPECT_EQ(paramAt(*circle, {1, 9, 0}), kUntouched);
}

TEST(CircleEntity, RunsFromMinusXTowardsYWhenItsNormalPointsDown) {
    const auto circle = EntityAccess::makeCircle({.radius = 3, .normal = {0, 0, -7}});
    EXPECT_TRUE(circle->normal().isEqualTo({0, 0, -1}));
    EXPECT_POINT(startOf(*circle), {-3, 0, 0});
    EXPECT_DOUBLE_EQ(paramAt(*circle, {0, 3, 0}), kPi / 2);
}

TEST(CircleEntity, RunsTheOtherWayWhenReversed) {
    const auto circle = EntityAccess::makeCircle({.centre = {1, 2, 0}, .radius = 3});
    EXPECT_EQ(circle->reverseCurve(), Yxrt::eOk);
    EXPECT_TRUE(circle->normal().isEqualTo({0, 0, -1}));
    EXPECT_POINT(circle->center(), {1, 2, 0});
    EXPECT_EQ(circle->radius(), 3.0);
}

RC_GTEST_PROP(CircleEntity, FindsTheParameterOfItsOwnPoints, (unsigned share, bool down)) {
    const auto circle =
        EntityAccess::makeCircle({.centre = {7, -3, 0}, .radius = 2.5, .normal = {0, 0, down ? -1. : 1.}});
    const double angle = 2 * kPi * (share % 10000) / 10000.0;
    RC_ASSERT(std::abs(paramAt(*circle, pointAt(*circle, angle)) - angle) <= 1e-12);
}
