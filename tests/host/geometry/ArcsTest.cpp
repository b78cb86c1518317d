#include <gtest/gtest.h>

#include <numbers>

#include <yxbase/YxGeCircArc3d.h>
#include <yxbase/YxGeEllipArc3d.h>

namespace {}  // namespace

TEST(CircularArc, IsTheUnitCircleByDefault) {
    const YxGeCircArc3d arc;
    EXPECT_TRUE(arc.center().isEqualTo(YxGePoint3d::kOrigin));
    EXPECT_TRUE(arc.normal().isEqualTo(YxGeVector3d::kZAxis));
    EXPECT_TRUE(arc.refVec().isEqualTo(YxGeVector3d::kXAxis));
    EXPECT_EQ(arc.radius(), 1.0);
    EXPECT_EQ(arc.startAng(), 0.0);
    EXPECT_EQ(arc.endAng(), 2 * std::numbers::pi);
}

TEST(CircularArc, MeasuresAnglesFromTheReference) {
    const YxGeCircArc3d arc({1, 2, 3}, YxGeVector3d::kZAxis, {0, 5, 0}, 2.0, 0.0, std::numbers::pi / 2);
    EXPECT_TRUE(arc.startPoint().isEqualTo({1, 4, 3}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({-1, 2, 3}));
}

TEST(CircularArc, RunsFromMinusXTowardsYWhenItsNormalPointsDown) {
    const YxGeCircArc3d arc({0, 0, 0}, {0, 0, -1}, {-1, 0, 0}, 1.0, 0.0, std::numbers::pi / 2);
    EXPECT_TRUE(arc.startPoint().isEqualTo({-1, 0, 0}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({0, 1, 0}));
}

TEST(CircularArc, UsesWhatOfTheReferenceLiesInItsPlane) {
    const YxGeCircArc3d arc({0, 0, 0}, {0, 0, 2}, {3, 0, 4}, 1.0, 0.0, std::numbers::pi);
    EXPECT_TRUE(arc.refVec().isEqualTo({1, 0, 0}));
    EXPECT_TRUE(arc.startPoint().isEqualTo({1, 0, 0}));
}

TEST(CircularArc, StaysOnItsCircleWithoutAUsefulNormalOrReference) {
    const YxGeCircArc3d alongNormal({0, 0, 0}, {1, 0, 0}, {1, 0, 0}, 2.0, 0.3, std::numbers::pi);
    EXPECT_NEAR(alongNormal.startPoint().distanceTo(YxGePoint3d::kOrigin), 2.0, 1e-15);
    EXPECT_NEAR(alongNormal.startPoint().x, 0.0, 1e-15);
    const YxGeCircArc3d nothing({0, 0, 0}, YxGeVector3d(), YxGeVector3d(), 2.0, 0.0, std::numbers::pi);
    EXPECT_TRUE(nothing.startPoint().isEqualTo({2, 0, 0}));
}

TEST(EllipticalArc, TakesItsAnglesAsParameters) {
    const YxGeEllipArc3d arc({1, 1, 0}, {0, 9, 0}, {-9, 0, 0}, 4.0, 2.0, 0.0, std::numbers::pi / 4);
    EXPECT_TRUE(arc.startPoint().isEqualTo({1, 5, 0}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({1 - std::numbers::sqrt2, 1 + 2 * std::numbers::sqrt2, 0}));
}
