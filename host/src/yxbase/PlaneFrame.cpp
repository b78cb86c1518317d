#include "host/src/yxbase/PlaneFrame.h"

#include <cmath>

namespace holdfast {
namespace {

bool isZero(const YxGeVector3d& v) {
    return v.x == 0.0 && v.y == 0.0 && v.z == 0.0;
}

/// What of a unit vector lies in the plane; zero when too little is left to give a direction.
YxGeVector3d inPlane(const YxGeVector3d& unit, const YxGeVector3d& normal) {
    constexpr double kNoDirection = 1e-8;
    const double along = unit.dotProduct(normal);
    if (along == 0.0)
        return unit;
    const YxGeVector3d rest = unit - normal * along;
    return rest.length() <= kNoDirection ? YxGeVector3d::kIdentity : rest.normal();
}

}  // namespace

YxGeVector3d PlaneFrame::directionAt(double angle) const {
    return x * std::cos(angle) + y * std::sin(angle);
}

double PlaneFrame::angleOf(const YxGeVector3d& direction) const {
    const double along = direction.dotProduct(x);
    const double across = direction.dotProduct(y);
    return along == 0.0 && across == 0.0 ? 0.0 : std::atan2(across, along);
}

PlaneFrame planeFrame(const YxGeVector3d& normal, const YxGeVector3d& reference) {
    const YxGeVector3d z = isZero(normal) ? YxGeVector3d::kZAxis : normal.normal();
    YxGeVector3d x = inPlane(reference.normal(), z);
    if (isZero(x))
        x = inPlane(std::abs(z.x) < 0.5 ? YxGeVector3d::kXAxis : YxGeVector3d::kYAxis, z);
    return {x, z.crossProduct(x), z};
}

PlaneFrame planeFrame(const YxGeVector3d& normal) {
    if (normal.x == 0.0 && normal.y == 0.0) {  // nearly every entity, and asked for at every point
        const double side = normal.z < 0.0 ? -1.0 : 1.0;
        return {{side, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, side}};
    }
    return planeFrame(normal, normal.z < 0.0 ? -YxGeVector3d::kXAxis : YxGeVector3d::kXAxis);
}

}  // namespace holdfast
