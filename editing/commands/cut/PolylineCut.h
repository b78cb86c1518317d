#pragma once

#include <optional>
#include <string>

#include "editing/Uses.h"
#include "editing/commands/fillet/SegmentSide.h"

namespace holdfast::editing {

/// A polyline in a fillet with another entity.
struct PolylineSide {
    std::string name;
    PolylineShape shape;
    std::optional<Vec2> pick{};  ///< where the user picked it, if he did
};

/// The segment of a polyline that a fillet cuts.
struct FilletedSegment {
    std::size_t segment = 0;
    FilletSide side;
};

/// The segment that was picked; without a pick the one at an end of the polyline, of which the outer end moves.
FilletedSegment filletedSegment(const PolylineSide& polyline, CurveEnd end);

/// The end of a polyline that is nearer to a curve, as drawn.
CurveEnd endTowards(const PolylineShape& polyline, const Shape& curve);

/// The ends of two polylines that are nearest to each other.
struct FacingEnds {
    CurveEnd first = CurveEnd::end;
    CurveEnd second = CurveEnd::start;
};
FacingEnds facingEnds(const PolylineShape& first, const PolylineShape& second);

/// A polyline that a fillet cuts off at a point of a segment.
struct PolylineCut {
    std::size_t segment = 0;
    CurveEnd moved = CurveEnd::end;
    Vec2 point;
    PolylineShape shape;      ///< without what lies behind the point; what lies before it is still there
    std::size_t leading = 0;  ///< how many vertices that is
};
PolylineCut cutAt(const PolylineSide& polyline, std::size_t segment, const CutSegment& cut);

/// The polyline without its first vertices.
PolylineShape withoutLeading(PolylineShape polyline, std::size_t count);

}  // namespace holdfast::editing
