#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using namespace curves;

TEST(RayEntity, StartsAtItsBaseAndHasNoEnd) {
    const auto ray = EntityAccess::makeRay({1, 2, 0}, {0, 5, 0});
    EXPECT_POINT(startOf(*ray), {1, 2, 0});
    EXPECT_TRUE(ray->unitDir().isEqualTo({0, 1, 0}));
    YxGePoint3d end = kUntouchedPoint;
    EXPECT_EQ(ray->getEndPoint(end), Yxrt::eNotApplicable);
    EXPECT_POINT(end, kUntouchedPoint);
}

TEST(RayEntity, MeasuresItsParameterFromTheBase) {
    const auto ray = EntityAccess::makeRay({1, 2, 0}, {3, 4, 0});
    EXPECT_DOUBLE_EQ(paramAt(*ray, {7, 10, 0}), 10.0);
    EXPECT_EQ(paramAt(*ray, {1 - 1e-7, 2, 0}), 0.0);
    EXPECT_EQ(paramAt(*ray, {-5, -6, 0}), kUntouched);
    EXPECT_EQ(paramAt(*ray, {7, 11, 0}), kUntouched);
    EXPECT_POINT(pointAt(*ray, 10.0), {7, 10, 0});
    EXPECT_POINT(pointAt(*ray, -1.0), kUntouchedPoint);
}

TEST(RayEntity, CannotBeTurnedRound) {
    const auto ray = EntityAccess::makeRay({1, 2, 0}, {3, 4, 0});
    EXPECT_EQ(ray->reverseCurve(), Yxrt::eNotApplicable);
    EXPECT_TRUE(ray->unitDir().isEqualTo({0.6, 0.8, 0}));
}

TEST(RayEntity, IsNoConstructionLine) {
    const auto ray = EntityAccess::makeRay({1, 2, 0}, {3, 4, 0});
    EXPECT_FALSE(ray->isKindOf(YxDbXline::desc()));
    EXPECT_TRUE(ray->isKindOf(YxDbCurve::desc()));
}

TEST(XlineEntity, IsDefinedByItsBaseAndAPointOneUnitAlong) {
    const auto xline = EntityAccess::makeXline({1, 2, 0}, {3, 4, 0});
    EXPECT_POINT(xline->basePoint(), {1, 2, 0});
    EXPECT_POINT(xline->secondPoint(), {1.6, 2.8, 0});
}

TEST(XlineEntity, MeasuresItsParameterToBothSides) {
    const auto xline = EntityAccess::makeXline({1, 2, 0}, {1, 0, 0});
    EXPECT_EQ(paramAt(*xline, {-9, 2, 0}), -10.0);
    EXPECT_EQ(paramAt(*xline, {-9, 5, 0}), kUntouched);
    EXPECT_POINT(pointAt(*xline, -10.0), {-9, 2, 0});
}

TEST(XlineEntity, HasNoEnds) {
    const auto xline = EntityAccess::makeXline({1, 2, 0}, {1, 0, 0});
    YxGePoint3d point = kUntouchedPoint;
    EXPECT_EQ(xline->getStartPoint(point), Yxrt::eNotApplicable);
    EXPECT_EQ(xline->getEndPoint(point), Yxrt::eNotApplicable);
    EXPECT_POINT(point, kUntouchedPoint);
}

TEST(XlineEntity, PointsTheOtherWayWhenReversed) {
    const auto xline = EntityAccess::makeXline({1, 2, 0}, {1, 0, 0});
    EXPECT_EQ(xline->reverseCurve(), Yxrt::eOk);
    EXPECT_POINT(xline->secondPoint(), {0, 2, 0});
}
