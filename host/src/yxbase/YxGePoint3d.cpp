#include <yxbase/YxGeMatrix3d.h>
#include <yxbase/YxGePoint3d.h>

constinit const YxGePoint3d YxGePoint3d::kOrigin{};

bool YxGePoint3d::isEqualTo(const YxGePoint3d& other, const YxGeTol& tol) const {
    return distanceTo(other) <= tol.equalPoint();
}

double YxGePoint3d::distanceTo(const YxGePoint3d& other) const {
    return (*this - other).length();
}

YxGePoint3d& YxGePoint3d::transformBy(const YxGeMatrix3d& matrix) {
    return *this = matrix * *this;
}
