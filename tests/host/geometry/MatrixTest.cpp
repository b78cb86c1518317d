#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <numbers>

#include <yxbase/YxGeMatrix3d.h>

namespace {

YxGeMatrix3d scaled(double x, double y, double z) {
    YxGeMatrix3d matrix;
    matrix(0, 0) = x;
    matrix(1, 1) = y;
    matrix(2, 2) = z;
    return matrix;
}

YxGeMatrix3d rotated(double angle, const YxGeVector3d& axis, const YxGePoint3d& centre = {}) {
    return YxGeMatrix3d().setToRotation(angle, axis, centre);
}

}  // namespace

TEST(Matrix, StartsAsTheIdentityAndReturnsToIt) {
    YxGeMatrix3d matrix = scaled(2, 3, 4);
    EXPECT_EQ(matrix.setToIdentity(), YxGeMatrix3d::kIdentity);
    EXPECT_EQ(YxGeMatrix3d(), YxGeMatrix3d::kIdentity);
    EXPECT_EQ(matrix(1, 1), 1.0);
    EXPECT_EQ(matrix(0, 3), 0.0);
}

TEST(MatrixTranslation, MovesPointsAndNotVectors) {
    const YxGeMatrix3d matrix = YxGeMatrix3d().setToTranslation({1, 2, 3});
    EXPECT_TRUE((matrix * YxGePoint3d(10, 10, 10)).isEqualTo({11, 12, 13}));
    EXPECT_TRUE((matrix * YxGeVector3d(10, 10, 10)).isEqualTo({10, 10, 10}));
}

TEST(MatrixRotation, TurnsRightHandedAboutTheAxisThroughTheCentre) {
    const YxGeMatrix3d matrix = rotated(std::numbers::pi / 2, {0, 0, 5}, {1, 1, 0});
    EXPECT_TRUE((matrix * YxGePoint3d(2, 1, 7)).isEqualTo({1, 2, 7}));
    EXPECT_TRUE((matrix * YxGePoint3d(1, 1, 0)).isEqualTo({1, 1, 0}));
}

TEST(MatrixRotation, AboutAZeroAxisIsTheIdentity) {
    EXPECT_EQ(rotated(1.0, YxGeVector3d(), {3, 4, 5}), YxGeMatrix3d::kIdentity);
}

TEST(MatrixRotation, AboutACoordinateAxisLeavesThatAxisAlone) {
    const YxGeMatrix3d matrix = rotated(0.7, YxGeVector3d::kZAxis);
    EXPECT_EQ(matrix(2, 2), 1.0);
    EXPECT_EQ(matrix(0, 2), 0.0);
    EXPECT_EQ(matrix(2, 1), 0.0);
    EXPECT_EQ(matrix(0, 0), std::cos(0.7));
    EXPECT_EQ(matrix(1, 0), std::sin(0.7));
}

TEST(MatrixProduct, AppliesTheLeftFactorLast) {
    YxGeMatrix3d matrix = YxGeMatrix3d().setToTranslation({1, 0, 0});
    matrix.preMultBy(rotated(std::numbers::pi / 2, YxGeVector3d::kZAxis));
    EXPECT_TRUE((matrix * YxGePoint3d::kOrigin).isEqualTo({0, 1, 0}));
}

TEST(MatrixProduct, TakesItselfAsTheLeftFactor) {
    YxGeMatrix3d matrix = YxGeMatrix3d().setToTranslation({1, 2, 3});
    matrix.preMultBy(matrix);
    EXPECT_TRUE((matrix * YxGePoint3d::kOrigin).isEqualTo({2, 4, 6}));
}

TEST(MatrixProduct, OfTheLargestNumbersIsANumber) {
    YxGeMatrix3d matrix;
    matrix(0, 0) = 1e200;
    matrix(0, 1) = -1e200;
    EXPECT_EQ((matrix * YxGePoint3d(1e200, 1e200, 0)).x, 0.0);
    EXPECT_EQ((matrix * YxGeVector3d(1e200, 1e200, 0)).x, 0.0);
    YxGeMatrix3d product = matrix;
    product(1, 0) = 1e200;
    product.preMultBy(matrix);
    EXPECT_FALSE(std::isnan(product(0, 0)));
    EXPECT_EQ(product(0, 1), -HUGE_VAL);
}

TEST(MatrixVolume, OfTheLargestColumnsIsANumber) {
    YxGeMatrix3d flat;
    for (int row = 0; row < 3; ++row)
        flat(row, 0) = flat(row, 1) = 1e200;
    EXPECT_EQ(flat.det(), 0.0);
    EXPECT_EQ(scaled(1e150, 1e150, -1e150).det(), -HUGE_VAL);
}

TEST(SingularMatrix, FlattensSpaceWhateverItsScale) {
    EXPECT_TRUE(scaled(1, 0, 1).isSingular());
    EXPECT_FALSE(scaled(1e-4, 1e-4, 1e-4).isSingular());
    YxGeMatrix3d flat;
    flat(0, 1) = 1.0;
    flat(1, 0) = 1.0;
    EXPECT_TRUE(flat.isSingular());
    EXPECT_FALSE(scaled(1, -1, 1).isSingular());
}

TEST(UniformlyScaledMatrix, MayTurnMirrorMoveAndScale) {
    YxGeMatrix3d matrix = scaled(-3, 3, 3);
    matrix.preMultBy(rotated(0.4, {1, 2, 3}, {5, 6, 7}));
    EXPECT_TRUE(matrix.isUniScaledOrtho());
    EXPECT_LT(matrix.det(), 0.0);
    EXPECT_TRUE(scaled(1e6, 1e6, 1e6).isUniScaledOrtho());
}

TEST(UniformlyScaledMatrix, NeitherStretchesNorShearsNorFlattens) {
    EXPECT_FALSE(scaled(1, 1, 1 + 1e-9).isUniScaledOrtho());
    EXPECT_FALSE(scaled(0, 0, 0).isUniScaledOrtho());
    YxGeMatrix3d sheared;
    sheared(0, 1) = 1e-9;
    EXPECT_FALSE(sheared.isUniScaledOrtho());
    sheared(0, 1) = 1e-11;
    EXPECT_TRUE(sheared.isUniScaledOrtho());
}

TEST(MatrixComparison, FollowsTheTolerance) {
    YxGeMatrix3d matrix;
    matrix(0, 3) = 1e-10;
    EXPECT_TRUE(matrix.isEqualTo(YxGeMatrix3d::kIdentity));
    EXPECT_NE(matrix, YxGeMatrix3d::kIdentity);
    matrix(1, 2) = 1e-9;
    EXPECT_FALSE(matrix.isEqualTo(YxGeMatrix3d::kIdentity));
}

TEST(MatrixOnPoints, TransformsInPlace) {
    YxGePoint3d point(1, 0, 0);
    YxGeVector3d vector(1, 0, 0);
    const YxGeMatrix3d matrix = rotated(std::numbers::pi, YxGeVector3d::kZAxis, {2, 0, 0});
    EXPECT_TRUE(point.transformBy(matrix).isEqualTo({3, 0, 0}));
    EXPECT_TRUE(vector.transformBy(matrix).isEqualTo({-1, 0, 0}));
}

RC_GTEST_PROP(MatrixRotation, KeepsLengthsAndTheAxis, (int angle, int x, int y, int z)) {
    RC_PRE(x != 0 || y != 0 || z != 0);
    const YxGeVector3d axis(x, y, z);
    const YxGeMatrix3d matrix = rotated(angle / 1000.0, axis);
    RC_ASSERT(matrix.isUniScaledOrtho());
    RC_ASSERT(std::abs(matrix.det() - 1.0) < 1e-12);
    RC_ASSERT((matrix * axis.normal()).isEqualTo(axis.normal()));
}
