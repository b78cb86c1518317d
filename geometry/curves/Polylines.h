#pragma once

#include <cstddef>

#include "geometry/Conics.h"
#include "geometry/Segments.h"
#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// One segment as a curve of its own: a LineShape, or the ArcShape that it covers. An ArcShape always runs
/// counter-clockwise: a segment with a negative bulge starts at the arc's end.
Shape segmentCurve(const PolylineShape& polyline, std::size_t index);

/// The same segments in the other direction, each vertex keeping its identifier. A closed one starts at the same
/// vertex.
PolylineShape reversedPolyline(const PolylineShape& polyline);

/// A closed polyline as an open one from vertex 0 round to vertex 0, which then stands at both ends, the second time
/// with identifier 0. An open one stays as it is.
PolylineShape openedPolyline(const PolylineShape& polyline);

/// The part from one parameter to another, firstParam < lastParam; of a closed polyline lastParam may exceed the number
/// of segments. Within 1e-9 of a vertex is at the vertex. Vertices keep their identifiers; an end inside a segment
/// takes that of the vertex which it replaces, so that the cut segment keeps both of its identifiers.
PolylineShape polylinePart(const PolylineShape& polyline, double firstParam, double lastParam);

}  // namespace holdfast::geometry
