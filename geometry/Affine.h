#pragma once

#include <optional>

#include "geometry/Shapes.h"
#include "geometry/Transforms.h"

namespace holdfast::geometry {

/// A transform of the plane that keeps straight lines straight, and no more: what stands in a block may be scaled in x
/// and in y by different factors.
struct Affine {
    Vec2 xAxis{1.0, 0.0};  ///< where the unit vectors go
    Vec2 yAxis{0.0, 1.0};
    Vec2 offset{};  ///< where the origin goes

    Vec2 pointAfter(Vec2 point) const { return vectorAfter(point) + offset; }
    Vec2 vectorAfter(Vec2 vector) const { return vector.x * xAxis + vector.y * yAxis; }
    double determinant() const { return cross(xAxis, yAxis); }
    friend bool operator==(const Affine&, const Affine&) = default;
};

Affine affineOf(const PlaneTransform& transform);

/// The one transform for `inner` and then `outer`.
Affine chained(const Affine& outer, const Affine& inner);

/// The same transform where it keeps all angles, to rounding; nothing where it does not.
std::optional<PlaneTransform> similarityOf(const Affine& transform);

/// The shape under a transform whose determinant is not 0. Where that keeps angles, as transformed() has it for those.
/// Otherwise of another kind, but exact: what was round becomes an ellipse or a part of one, a polyline with arcs a
/// rational spline of degree 2. Directions have the length 1. A text keeps its letters upright on its line: it takes
/// on the scale across that.
Shape transformed(const Shape& shape, const Affine& transform);

}  // namespace holdfast::geometry
