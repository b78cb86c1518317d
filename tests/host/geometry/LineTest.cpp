#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <yxbase/YxGeLine3d.h>

namespace {

YxGeTol pointTolerance(double points) {
    YxGeTol tol;
    tol.setEqualPoint(points);
    return tol;
}

}  // namespace

TEST(LineInSpace, HoldsPointsBeyondItsTwoPoints) {
    const YxGeLine3d line({0, 0, 0}, {1, 1, 0});
    EXPECT_TRUE(line.isOn({-7, -7, 0}));
    EXPECT_TRUE(line.isOn({1e6, 1e6, 0}));
    EXPECT_FALSE(line.isOn({1, 1, 1e-9}));
}

TEST(LineInSpace, HoldsPointsUpToTheToleranceInclusive) {
    const YxGeLine3d line({0, 0, 0}, {4, 0, 0});
    EXPECT_TRUE(line.isOn({9, 0.5, 0}, pointTolerance(0.5)));
    EXPECT_FALSE(line.isOn({9, 0.5000001, 0}, pointTolerance(0.5)));
}

TEST(LineInSpace, ThroughTwoEqualPointsIsThatPoint) {
    const YxGeLine3d line({2, 3, 0}, {2, 3, 0});
    EXPECT_TRUE(line.isOn({2, 3, 0}));
    EXPECT_FALSE(line.isOn({2, 4, 0}));
}

RC_GTEST_PROP(LineInSpace, HoldsItsOwnPointsFarAway, (int x, int y)) {
    RC_PRE(x != 0 || y != 0);
    const YxGePoint3d base(123456.0, -654321.0, 0.0);
    const YxGeVector3d direction(x, y, 0.0);
    const YxGeLine3d line(base, base + direction);
    RC_ASSERT(line.isOn(base + direction * 8.0));
    RC_ASSERT(line.isOn(base - direction * 3.0));
}
