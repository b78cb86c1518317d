#pragma once

#include <cstddef>
#include <string>

#include "editing/Uses.h"
#include "editing/commands/fillet/FilletGeometry.h"

namespace holdfast::editing {

/// What a fillet makes of one segment of a polyline: where its moved end goes, and its bulge then.
struct CutSegment {
    CurveEnd moved = CurveEnd::end;  ///< in the direction of the polyline
    Vec2 point;
    double bulge = 0.0;
};

/// "segment 2 of p"
std::string spokenSegment(const std::string& polyline, std::size_t segment);

/// A segment as one side of a fillet, called by its spoken name. Arc segments that run clockwise are curves that run
/// against the polyline.
FilletSide segmentSide(const std::string& spoken, const PolylineShape& polyline, std::size_t segment);

/// The same, when it is known which end of the segment, in the direction of the polyline, the fillet moves.
FilletSide segmentSide(const std::string& spoken, const PolylineShape& polyline, std::size_t segment, CurveEnd moves);

/// Reads the fillet's result for one side back. EditError when next to nothing would be left of the segment.
CutSegment cutSegment(const std::string& spoken, const PolylineShape& polyline, std::size_t segment, const Shape& curve,
                      CurveEnd movedEnd);

/// The bulge of an arc for the direction in which it starts at a point.
double bulgeFrom(const ArcShape& arc, Vec2 start);

}  // namespace holdfast::editing
