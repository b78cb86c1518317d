#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include <yxbase/YxGePoint2d.h>
#include <yxbase/YxGePoint3d.h>

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

YxGeTol tolerance(double points, double vectors) {
    YxGeTol tol;
    tol.setEqualPoint(points);
    tol.setEqualVector(vectors);
    return tol;
}

bool isFinite(const YxGeVector3d& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

}  // namespace

TEST(Tolerance, StandsAtTenToTheMinusTenForPointsAndVectors) {
    EXPECT_EQ(YxGeContext::gTol.equalPoint(), 1e-10);
    EXPECT_EQ(YxGeContext::gTol.equalVector(), 1e-10);
}

TEST(Points, AreEqualUpToTheToleranceInclusive) {
    const YxGeTol tol = tolerance(0.5, 0.0);
    EXPECT_TRUE(YxGePoint3d(1, 2, 3).isEqualTo({1, 2, 3.5}, tol));
    EXPECT_FALSE(YxGePoint3d(1, 2, 3).isEqualTo({1, 2, std::nextafter(3.5, 4.0)}, tol));
    EXPECT_TRUE(YxGePoint2d(1, 2).isEqualTo({1, 1.5}, tol));
    EXPECT_FALSE(YxGePoint2d(1, 2).isEqualTo({1, 1.49}, tol));
}

TEST(Points, MeasureTheDistanceAndNotTheCoordinates) {
    const YxGeTol tol = tolerance(1.0, 0.0);
    EXPECT_FALSE(YxGePoint3d().isEqualTo({0.9, 0.9, 0}, tol));
    EXPECT_EQ(YxGePoint3d(1, 1, 1).distanceTo({3, 4, 7}), 7.0);
}

TEST(Vectors, AreEqualOrZeroUpToTheVectorToleranceInclusive) {
    const YxGeTol tol = tolerance(0.0, 0.25);
    EXPECT_TRUE(YxGeVector3d(1, 0, 0).isEqualTo({1.25, 0, 0}, tol));
    EXPECT_FALSE(YxGeVector3d(1, 0, 0).isEqualTo({1.26, 0, 0}, tol));
    EXPECT_TRUE(YxGeVector3d(0, 0.25, 0).isZeroLength(tol));
    EXPECT_FALSE(YxGeVector3d(0, 0.25, 0.01).isZeroLength(tol));
    EXPECT_TRUE(YxGeVector3d::kIdentity.isZeroLength());
}

TEST(VectorNormal, OfTheZeroVectorIsTheZeroVector) {
    EXPECT_EQ(YxGeVector3d().normal().length(), 0.0);
}

TEST(VectorNormal, HasLengthOneForTheLongestAndTheShortestVector) {
    EXPECT_NEAR(YxGeVector3d(kLargest, -kLargest, kLargest).normal().length(), 1.0, 1e-15);
    EXPECT_EQ(YxGeVector3d(0, kSmallest, 0).normal().y, 1.0);
    EXPECT_NEAR(YxGeVector3d(1e-200, 1e-200, 0).normal().x, std::sqrt(0.5), 1e-15);
}

TEST(VectorNormal, OfAVectorThatIsNotFiniteIsItself) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(YxGeVector3d(infinity, 1, 0).normal().y, 1.0);
    EXPECT_TRUE(std::isnan(YxGeVector3d(std::nan(""), 1, 0).normal().x));
}

TEST(VectorLength, KeepsItsDigitsWhereSquaresOverflowOrVanish) {
    EXPECT_DOUBLE_EQ(YxGeVector3d(3e200, 4e200, 0).length(), 5e200);
    EXPECT_DOUBLE_EQ(YxGeVector3d(3e-200, 0, 4e-200).length(), 5e-200);
}

TEST(VectorProducts, FollowTheRightHand) {
    const YxGeVector3d product = YxGeVector3d::kXAxis.crossProduct(YxGeVector3d::kYAxis);
    EXPECT_TRUE(product.isEqualTo(YxGeVector3d::kZAxis));
    EXPECT_EQ(YxGeVector3d(1, 2, 3).dotProduct({4, 5, 6}), 32.0);
}

TEST(VectorProducts, OfTheLongestVectorsAreNumbers) {
    EXPECT_EQ(YxGeVector3d(1e200, 1e200, 3).dotProduct({1e200, -1e200, 0}), 0.0);
    EXPECT_EQ(YxGeVector3d(1e200, -1e200, 0).dotProduct({1e200, 2e199, 0}), HUGE_VAL);
    const YxGeVector3d product = YxGeVector3d(1e200, 2e200, 0).crossProduct({1e200, 2e200, 1});
    EXPECT_EQ(product.x, 2e200);
    EXPECT_EQ(product.y, -1e200);
    EXPECT_EQ(product.z, 0.0);
}

TEST(VectorProducts, OfWhatIsNoNumberAreNone) {
    EXPECT_TRUE(std::isnan(YxGeVector3d(std::nan(""), 0, 0).dotProduct({1, 0, 0})));
    EXPECT_FALSE(std::isfinite(YxGeVector3d(HUGE_VAL, 0, 0).dotProduct({0, 1, 0})));
}

TEST(VectorAngle, RunsFromZeroToPi) {
    EXPECT_EQ(YxGeVector3d::kXAxis.angleTo({0, -3, 0}), std::numbers::pi / 2);
    EXPECT_EQ(YxGeVector3d::kXAxis.angleTo({-5, 0, 0}), std::numbers::pi);
    EXPECT_EQ(YxGeVector3d(1, 1, 0).angleTo({7, 7, 0}), 0.0);
}

TEST(VectorAngle, SeesSmallAnglesThatACosineLoses) {
    EXPECT_DOUBLE_EQ(YxGeVector3d(1, 0, 0).angleTo({1, 1e-12, 0}), 1e-12);
}

TEST(VectorAngle, WithAZeroVectorIsZero) {
    const YxGeVector3d backwards(-1, -1, -1);
    EXPECT_EQ(backwards.angleTo(YxGeVector3d()), 0.0);
    EXPECT_EQ(YxGeVector3d().angleTo(backwards), 0.0);
    EXPECT_EQ(YxGeVector3d().angleTo(YxGeVector3d()), 0.0);
}

TEST(ParallelVectors, PointTheSameWayOrTheOppositeWay) {
    EXPECT_TRUE(YxGeVector3d(1, 2, 3).isParallelTo({2, 4, 6}));
    EXPECT_TRUE(YxGeVector3d(1, 2, 3).isParallelTo({-1e5, -2e5, -3e5}));
    EXPECT_FALSE(YxGeVector3d(1, 0, 0).isParallelTo({1, 1e-9, 0}));
    EXPECT_TRUE(YxGeVector3d(1, 0, 0).isParallelTo({1, 1e-9, 0}, tolerance(0.0, 1e-8)));
}

TEST(ParallelVectors, DoNotIncludeAZeroVector) {
    EXPECT_FALSE(YxGeVector3d().isParallelTo({1, 0, 0}));
    EXPECT_FALSE(YxGeVector3d(1, 0, 0).isParallelTo(YxGeVector3d()));
    EXPECT_FALSE(YxGeVector3d().isParallelTo(YxGeVector3d()));
}

RC_GTEST_PROP(VectorNormal, IsFiniteForEveryFiniteVector, (double x, double y, double z)) {
    RC_PRE(std::isfinite(x) && std::isfinite(y) && std::isfinite(z));
    RC_ASSERT(isFinite(YxGeVector3d(x, y, z).normal()));
}

RC_GTEST_PROP(VectorAngle, IsANumberForEveryFinitePair, (double x, double y, double z, double u)) {
    RC_PRE(std::isfinite(x) && std::isfinite(y) && std::isfinite(z) && std::isfinite(u));
    const double angle = YxGeVector3d(x, y, z).angleTo({u, x, y});
    RC_ASSERT(angle >= 0.0 && angle <= std::numbers::pi);
}
