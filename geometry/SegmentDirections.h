#pragma once

#include "geometry/Vec2.h"

namespace holdfast::geometry {

// The directions, of length 1, in which a segment of a polyline leaves its first vertex and arrives at its second: the
// chord turned by half the included angle, whose cosine and sine the bulge tells without rounding much.

inline Vec2 turnedByBulge(Vec2 direction, double bulge) {
    const double scale = 1.0 / (1.0 + bulge * bulge);
    return scale * ((1.0 - bulge * bulge) * direction + 2.0 * bulge * leftOf(direction));
}

inline Vec2 startDirection(Vec2 from, Vec2 to, double bulge) {
    return turnedByBulge(unit(to - from), -bulge);
}

inline Vec2 endDirection(Vec2 from, Vec2 to, double bulge) {
    return turnedByBulge(unit(to - from), bulge);
}

}  // namespace holdfast::geometry
