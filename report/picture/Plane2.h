#pragma once

#include <cmath>

#include "geometry/Angles.h"
#include "geometry/Box.h"
#include "geometry/Vec2.h"
#include "report/Uses.h"

/// What pictures need of plane geometry.
namespace holdfast::report {

inline Vec2 operator*(Vec2 a, double factor) {
    return {a.x * factor, a.y * factor};
}
inline Vec2 midway(Vec2 a, Vec2 b) {
    return (a + b) * 0.5;
}
/// The vector of this length at an angle from the x axis.
inline Vec2 polar(double radius, double angle) {
    return geometry::polar(angle) * radius;
}

/// Of length 1; the fallback for a vector that is zero or not finite.
inline Vec2 unitOr(Vec2 a, Vec2 fallback) {
    const double size = norm(a);
    return size > 0.0 && std::isfinite(size) ? a * (1.0 / size) : fallback;
}

}  // namespace holdfast::report
