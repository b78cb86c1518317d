#pragma once

#include "geometry/Shapes.h"

namespace holdfast::geometry {

// Arc lengths, with the parameters of Parameters.h. GeometryError as there.

/// Length of the whole curve (infinite for rays and xlines), or between two parameters, negative if they fall.
double lengthOf(const Shape& shape);
double lengthBetween(const Shape& shape, double first, double last);

/// The parameter at a signed distance along the curve. Lines, arcs and elliptical arcs go on along the carrier;
/// GeometryError where a spline or polyline ends before.
double paramAtDistance(const Shape& shape, double from, double distance);

}  // namespace holdfast::geometry
