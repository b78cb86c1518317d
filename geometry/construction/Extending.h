#pragma once

#include <optional>

#include "geometry/CurveEnd.h"
#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

/// The curve with one end moved along its carrier to a parameter: shorter, or longer than it is. An arc never becomes
/// more than a full turn; its parameter may be given in any turn. A polyline is led on along its outermost segment (its
/// parameter below 0 or above the number of segments, as in Parameters.h), with the bulge that belongs to it. A spline
/// is led on along the curve of its outermost span and keeps the number of its control points, and the places of those
/// that do not belong to that span; only a rational one may need further spans. An end at infinity is cut.
/// GeometryError where nothing would be left, for closed curves, and where a rational spline runs off to infinity
/// before.
Shape withEndAt(const Shape& curve, CurveEnd end, double param);

/// Where the prolonged end of a curve first meets a boundary.
struct Extension {
    Vec2 point;
    double param = 0.0;  ///< on the curve: what withEndAt takes
    double boundaryParam = 0.0;
};

/// None where it never does; a boundary that only the end itself touches is not met. Arcs are followed up to their own
/// other end, splines up to 64 times their outermost span. GeometryError for curves without that end and for unsound
/// shapes.
std::optional<Extension> extensionTo(const Shape& curve, CurveEnd end, const Shape& boundary,
                                     Extent boundaryExtent = Extent::bounded);

/// The curve with one end moved to a point that lies on its carrier (within 1e-6 of its size, else GeometryError). A
/// spline is led to any point: along its outermost span where that passes the point, else by a further span that starts
/// with the same curvature.
Shape extendedTo(const Shape& curve, CurveEnd end, Vec2 point);

}  // namespace holdfast::geometry
