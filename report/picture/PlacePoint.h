#pragma once

#include "document/Document.h"
#include "report/Uses.h"
#include "report/picture/Plane2.h"

namespace holdfast::report {

/// A spot on a curve and the way that the curve runs there.
struct Spot {
    Vec2 point;
    Vec2 tangent{1.0, 0.0};
};

/// The curve that a place names: the entity's shape, or one segment of a polyline.
Shape curveAt(const Shape& shape, const Place& place);

/// Where a place lies; for a whole curve its middle, or where a label stands well (circles: up and right).
Spot spotOf(const Shape& shape, const Place& place);

/// The point of a curve next to another point; lines count as unbounded and arcs as circles.
Vec2 nearestOn(const Shape& curve, Vec2 point);

/// True for a place that names a point; a point entity counts as one.
bool isPoint(const Shape& shape, const Place& place);

}  // namespace holdfast::report
