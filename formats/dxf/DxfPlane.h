#pragma once

#include <cmath>

#include "formats/Uses.h"
#include "formats/dxf/DxfGroups.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"

namespace holdfast::formats {

/// Where the plane of an entity looks, by its extrusion direction.
enum class Facing { up, down, sideways };

inline Facing facingOf(const DxfEntity& entity) {
    const double x = entity.number(210, 0.0), y = entity.number(220, 0.0), z = entity.number(230, 1.0);
    const double tilt = kSameDirection * std::abs(z);
    if (z == 0.0 || std::abs(x) > tilt || std::abs(y) > tilt)
        return Facing::sideways;
    return z > 0.0 ? Facing::up : Facing::down;
}

/// The axes of a plane that looks down are -x and y (the arbitrary axis algorithm of the DXF reference).
inline Vec2 turned(Vec2 point, Facing facing) {
    return facing == Facing::down ? Vec2{-point.x, point.y} : point;
}

}  // namespace holdfast::formats
