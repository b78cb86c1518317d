#pragma once

#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// A transform of the plane that keeps all angles: a turn or a reflection, a scale, then a shift.
struct PlaneTransform {
    Vec2 xAxis{1.0, 0.0};  ///< where the unit vectors go, scale included
    Vec2 yAxis{0.0, 1.0};
    Vec2 offset{};       ///< where the origin goes
    double scale = 1.0;  ///< by how much lengths grow, above 0
    bool mirrors = false;

    Vec2 pointAfter(Vec2 point) const;
    Vec2 vectorAfter(Vec2 vector) const;
    /// Without the scale: directions keep their length.
    Vec2 directionAfter(Vec2 direction) const;
    /// The angle from the x axis at which a direction of this angle lies afterwards.
    double angleAfter(double angle) const;
};

PlaneTransform translation(Vec2 by);

/// A turn about a point, counter-clockwise in radians. Quarter turns are exact.
PlaneTransform rotation(Vec2 centre, double angle);

/// Multiplies all distances from a point by a factor above 0.
PlaneTransform scaling(Vec2 centre, double factor);

/// The reflection in the line through two points; GeometryError when they are one point.
PlaneTransform reflection(Vec2 first, Vec2 second);

/// Brings `from` to `to` and the direction from there to `fromToward` into that from `to` to `toToward`; scaled: also
/// `fromToward` to `toToward`. GeometryError when two points of a pair are one.
PlaneTransform alignment(Vec2 from, Vec2 fromToward, Vec2 to, Vec2 toToward, bool scaled);

/// The shape under a transform, of the same kind and with the same vertex identifiers. Arcs and elliptical arcs run
/// counter-clockwise still, so that a reflection exchanges their ends. A mirrored text stays readable: it lies along
/// the mirrored direction, in that sense of the two which is closer to the former one.
Shape transformed(const Shape& shape, const PlaneTransform& transform);

}  // namespace holdfast::geometry
