#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <numbers>
#include <ostream>

#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbCurve.h>

/// Printed when a comparison fails.
inline std::ostream& operator<<(std::ostream& out, const YxGePoint3d& p) {
    return out << '(' << p.x << ", " << p.y << ", " << p.z << ')';
}
inline std::ostream& operator<<(std::ostream& out, const YxGeVector3d& v) {
    return out << '<' << v.x << ", " << v.y << ", " << v.z << '>';
}

namespace curves {

inline constexpr double kPi = std::numbers::pi;
/// What a refused operation leaves in its arguments.
inline constexpr double kUntouched = -12345.0;
inline constexpr YxGePoint3d kUntouchedPoint{-1.0, -2.0, -3.0};

inline YxGePoint3d startOf(const YxDbCurve& curve) {
    YxGePoint3d point = kUntouchedPoint;
    curve.getStartPoint(point);
    return point;
}
inline YxGePoint3d endOf(const YxDbCurve& curve) {
    YxGePoint3d point = kUntouchedPoint;
    curve.getEndPoint(point);
    return point;
}
/// kUntouchedPoint when the curve refuses.
inline YxGePoint3d pointAt(const YxDbCurve& curve, double param) {
    YxGePoint3d point = kUntouchedPoint;
    curve.getPointAtParam(param, point);
    return point;
}
/// kUntouched when the curve refuses.
inline double paramAt(const YxDbCurve& curve, const YxGePoint3d& point) {
    double param = kUntouched;
    curve.getParamAtPoint(point, param);
    return param;
}

/// A copy of an entity's own class; the caller owns it.
template <class Kind>
std::unique_ptr<Kind> copyOf(const Kind& entity) {
    return std::unique_ptr<Kind>(static_cast<Kind*>(entity.clone()));
}

inline YxGeMatrix3d translation(double x, double y, double z = 0.0) {
    return YxGeMatrix3d().setToTranslation({x, y, z});
}
inline YxGeMatrix3d rotation(double angle, const YxGePoint3d& centre = {}) {
    return YxGeMatrix3d().setToRotation(angle, YxGeVector3d::kZAxis, centre);
}
/// Scales about the origin.
inline YxGeMatrix3d scaling(double x, double y, double z) {
    YxGeMatrix3d matrix;
    matrix(0, 0) = x;
    matrix(1, 1) = y;
    matrix(2, 2) = z;
    return matrix;
}
/// Mirrors about the line through the origin in the direction of the angle.
inline YxGeMatrix3d mirror(double angle) {
    YxGeMatrix3d matrix;
    matrix(0, 0) = std::cos(2 * angle);
    matrix(0, 1) = matrix(1, 0) = std::sin(2 * angle);
    matrix(1, 1) = -std::cos(2 * angle);
    return matrix;
}
inline YxGeMatrix3d mirrorAboutYAxis() {
    return scaling(-1, 1, 1);
}
inline YxGeMatrix3d shear() {
    YxGeMatrix3d matrix;
    matrix(0, 1) = 0.5;
    return matrix;
}
/// Turns, mirrors, scales and moves, all in the plane.
inline YxGeMatrix3d mirroredSimilarity(double angle) {
    YxGeMatrix3d matrix = mirror(angle);
    matrix.preMultBy(scaling(2.5, 2.5, 2.5)).preMultBy(translation(3, -4));
    return matrix;
}

}  // namespace curves

namespace curves {

inline testing::AssertionResult samePoint(const YxGePoint3d& actual, const YxGePoint3d& expected) {
    if (actual.isEqualTo(expected))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << actual << " instead of " << expected;
}

}  // namespace curves

/// EXPECT_POINT(startOf(line), {1, 2, 0}): equal within the host's tolerance.
#define EXPECT_POINT(actual, ...) EXPECT_TRUE(curves::samePoint(actual, __VA_ARGS__))
