#pragma once

#include <vector>

#include "geometry/Shapes.h"
#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

enum class CrossingKind {
    crossing,   ///< the curves pass through each other, or an end or corner of one lies on the other
    touching,   ///< they have the same tangent there
    overlapEnd  ///< an end of a stretch along which they run together
};

/// A common point of two curves, with the parameter that it has on each (see Parameters.h).
struct Crossing {
    Vec2 point;
    double paramA = 0.0;
    double paramB = 0.0;
    CrossingKind kind = CrossingKind::crossing;
};

/// All common points of two curves by increasing parameter on the first, each once: a crossing at a vertex of a
/// polyline or at the seam of a closed curve is one crossing. Curves that pass within 1e-9 of the smaller one's size of
/// each other touch. Curves that run together give the ends of the shared stretch; the same closed curve twice gives
/// nothing. At a vertex that a polyline repeats, each of its parameters has its crossing. A crossing on a carrier
/// beyond an end has the parameter that the curve would have if it went on there. GeometryError for what is no curve or
/// not sound. Cost: n log n for the pieces of both, and the pairs of pieces that lie near each other.
std::vector<Crossing> intersect(const Shape& a, const Shape& b, Extent extentA = Extent::bounded,
                                Extent extentB = Extent::bounded);

}  // namespace holdfast::geometry
