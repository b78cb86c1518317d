#pragma once

namespace holdfast::geometry {

/// Constraint kinds by their names in drawing files. ConstraintKinds.cpp has one row for each, in this order.
enum class ConstraintType {
    coincident,
    concentric,
    pointOnCurve,
    fixed,
    horizontal,
    vertical,
    parallel,
    perpendicular,
    collinear,
    tangent,
    equal,
    symmetric,
    midpoint,
    internal,
    g2Smooth,
    composite,
    // dimensions: they carry a value
    distance,
    distanceX,
    distanceY,
    radius,
    diameter,
    angle
};

}  // namespace holdfast::geometry
