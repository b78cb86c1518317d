#pragma once

#include <yxbase/YxGeVector3d.h>

class YxGePoint3d {
public:
    constexpr YxGePoint3d() = default;
    constexpr YxGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const YxGePoint3d kOrigin;

    /// Distance within tol.equalPoint(), inclusive.
    bool isEqualTo(const YxGePoint3d& other, const YxGeTol& tol = YxGeContext::gTol) const;
    double distanceTo(const YxGePoint3d& other) const;
    YxGePoint3d& transformBy(const YxGeMatrix3d& matrix);

    YxGeVector3d operator-(const YxGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    YxGePoint3d operator+(const YxGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    YxGePoint3d operator-(const YxGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};
