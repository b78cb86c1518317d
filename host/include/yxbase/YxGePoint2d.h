#pragma once

#include <yxbase/YxGeTol.h>

class YxGePoint2d {
public:
    constexpr YxGePoint2d() = default;
    constexpr YxGePoint2d(double xx, double yy) : x(xx), y(yy) {}

    static const YxGePoint2d kOrigin;

    bool isEqualTo(const YxGePoint2d& other, const YxGeTol& tol = YxGeContext::gTol) const;

    double x = 0.0;
    double y = 0.0;
};
