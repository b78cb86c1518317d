#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// The ends of a shape as places: of an open polyline the start of its first segment and the end of its last one.
/// Empty for what has no ends.
std::vector<Place> endsOf(const std::string& name, const Shape& shape);

/// The end of a shape, or the vertex of a polyline, that lies at a point. Linear in a polyline.
std::optional<Place> endAt(const std::string& name, const Shape& shape, Vec2 point, double near);

/// The curve through a point: the entity itself, or a segment of a polyline. Linear in a polyline.
std::optional<Place> curveAt(const std::string& name, const Shape& shape, Vec2 point, double near);

/// The curve that a place names: the shape itself, or the segment of a polyline as a line or an arc.
Shape curveOf(const Shape& shape, const Place& place);

bool isSegmentPlace(const Place& place);

/// "the end of g3", "p.segment:2"
std::string spokenEnd(const Place& place);

}  // namespace holdfast::editing
