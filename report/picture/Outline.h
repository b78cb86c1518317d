#pragma once

#include <vector>

#include "document/Document.h"
#include "report/Uses.h"
#include "report/picture/Plane2.h"

namespace holdfast::report {

/// One stroke of a pen, from where the last one ended.
struct Stroke {
    enum class Kind { move, line, quadratic, cubic, arc };
    Kind kind = Kind::move;
    Vec2 to;
    Vec2 control1, control2;                  ///< quadratic: the first only
    Vec2 centre, major, minor;                ///< arc: centre + major cos t + minor sin t, half axes at right angles
    double startParam = 0.0, endParam = 0.0;  ///< arc: runs backwards where endParam < startParam
};

/// The exact course of an entity as strokes, in drawing units.
struct Outline {
    std::vector<Stroke> strokes;
    bool closed = false;  ///< ends where it began, without a corner's butt ends
};

/// The outline of a shape. Unbounded lines end at `window`; one that misses it has no strokes. Splines that are no
/// chains of polynomial pieces up to degree 3 become chords within `tolerance`. Points and texts have no outline.
Outline outlineOf(const Shape& shape, const Box& window, double tolerance);

/// Chords along an outline, within about `tolerance` of it; one run of points for each unbroken part.
std::vector<std::vector<Vec2>> flattened(const Outline& outline, double tolerance);

/// The box round a shape; unbounded lines count with their point alone, texts with a guess at their width.
Box boundsOf(const Shape& shape);

/// Segment `index` of a polyline as a line or arc of its own; an arc runs counter-clockwise whatever its bulge.
/// An index without a segment gives a point at the nearest vertex.
Shape segmentShape(const PolylineShape& polyline, int index);

}  // namespace holdfast::report
