#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"
#include "geometry/Conics.h"
#include "geometry/Segments.h"

namespace holdfast::document {

/// The vertex in which segment i of a polyline ends.
std::size_t segmentEndVertex(const PolylineShape& polyline, std::size_t segment);

/// True when the shape has the place: an index in range, a centre only where there is one.
///
/// A line has whole, start, end, mid; an arc also centre; an elliptical arc start, end, centre; circles and ellipses
/// centre; a spline start, end (unless it is periodic) and its control points; a polyline its segments; a ray, xline
/// or text start, its base point. end of a ray or an xline stands for its direction turned round, in angles only.
bool hasPlace(const Shape& shape, const Place& place);

/// The start of a line or of a polyline's segment.
Place startOfLine(const Place& line);

/// The entities that a constraint names, in the order of its places; one that it names twice stands there twice.
std::vector<std::string> entitiesOf(const Constraint& constraint);

/// The places of a shape in words, for messages: "whole, start, end or mid".
std::string placesOf(const Shape& shape);

/// Where a place is, when it is a point that the shape has; nothing for whole entities, segments and directions.
std::optional<Vec2> pointAt(const Shape& shape, const Place& place);

}  // namespace holdfast::document
