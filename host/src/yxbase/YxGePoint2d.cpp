#include <yxbase/YxGePoint2d.h>

#include <cmath>

constinit const YxGePoint2d YxGePoint2d::kOrigin{};

bool YxGePoint2d::isEqualTo(const YxGePoint2d& other, const YxGeTol& tol) const {
    return std::hypot(x - other.x, y - other.y) <= tol.equalPoint();
}
