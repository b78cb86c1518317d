#pragma once

#include <vector>

#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// A circle that touches two curves, and where.
struct TangentCircle {
    Vec2 centre;
    double radius = 0.0;
    Vec2 pointA, pointB;  ///< the tangent points, in which the circle and the curves have the same tangent
    double paramA = 0.0;
    double paramB = 0.0;
};

/// All circles of a radius above 0 that touch both curves, taken as their carriers: lines and rays as unbounded lines,
/// arcs as circles, elliptical arcs as ellipses, splines between their ends. Whether the tangent points lie on the
/// curves as drawn is for the caller to see (their parameters tell), as is the choice among the circles. Of a polyline
/// take the segment (segmentCurve). Circles that coincide with a curve are not among them, nor do curves that lie on
/// each other have any. Sorted by the first parameter, then by the second. GeometryError for unsound shapes, polylines
/// and radii that are not positive.
std::vector<TangentCircle> tangentCircles(const Shape& a, const Shape& b, double radius);

/// The arc of the circle between the two tangent points that is shorter than a half turn; counter-clockwise as every
/// arc, so that it may start at either of them.
ArcShape filletArc(const TangentCircle& circle);

}  // namespace holdfast::geometry
