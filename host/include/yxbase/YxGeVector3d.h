#pragma once

#include <yxbase/YxGeTol.h>

class YxGeMatrix3d;

class YxGeVector3d {
public:
    constexpr YxGeVector3d() = default;
    constexpr YxGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const YxGeVector3d kIdentity;  ///< the zero vector
    static const YxGeVector3d kXAxis;
    static const YxGeVector3d kYAxis;
    static const YxGeVector3d kZAxis;

    double length() const;
    /// The vector of length 1; a zero vector gives itself.
    YxGeVector3d normal() const;
    double dotProduct(const YxGeVector3d& other) const;
    YxGeVector3d crossProduct(const YxGeVector3d& other) const;
    /// The angle between the two directions in [0, pi]; 0 when either is a zero vector.
    double angleTo(const YxGeVector3d& other) const;
    bool isEqualTo(const YxGeVector3d& other, const YxGeTol& tol = YxGeContext::gTol) const;
    /// Same or opposite direction; a zero vector is parallel to nothing.
    bool isParallelTo(const YxGeVector3d& other, const YxGeTol& tol = YxGeContext::gTol) const;
    bool isZeroLength(const YxGeTol& tol = YxGeContext::gTol) const;
    YxGeVector3d& transformBy(const YxGeMatrix3d& matrix);

    YxGeVector3d operator-() const { return {-x, -y, -z}; }
    YxGeVector3d operator+(const YxGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    YxGeVector3d operator-(const YxGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    YxGeVector3d operator*(double scale) const { return {x * scale, y * scale, z * scale}; }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};
