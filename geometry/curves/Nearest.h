#pragma once

#include <optional>

#include "geometry/Shapes.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

/// A point's nearest neighbour on a curve.
struct Nearest {
    Vec2 point;
    double param = 0.0;
    double distance = 0.0;
};
Nearest nearestOn(const Shape& shape, Vec2 point, Extent extent = Extent::bounded);

/// The piece's own parameter nearest to a point.
double nearestParam(const Piece& piece, Vec2 point);

/// The parameter of a point that lies on the curve within a tolerance, else none.
std::optional<double> paramAtPoint(const Shape& shape, Vec2 point, double tolerance = kHolds,
                                   Extent extent = Extent::bounded);

}  // namespace holdfast::geometry
