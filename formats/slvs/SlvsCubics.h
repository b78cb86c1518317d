#pragma once

#include <array>
#include <vector>

#include "formats/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::formats {

using CubicPiece = std::array<Vec2, 4>;  ///< the control points of a Bezier curve

struct CubicPieces {
    std::vector<CubicPiece> pieces;  ///< each begins where the one before ends
    bool isExact = false;
};

/// Ellipses, elliptical arcs and splines as cubic Bezier curves: exactly where they are of degree 3 at most and
/// without weights, else within the tolerance, which is above 0. Empty for other shapes. However small the tolerance
/// is, a quarter of an ellipse and a knot interval are cut into 1024 pieces at most.
CubicPieces cubicPiecesOf(const Shape& shape, double tolerance);

}  // namespace holdfast::formats
