#pragma once

namespace holdfast::geometry {

/// Where on an entity a constraint holds.
enum class PlaceKind {
    whole,         ///< "whole": the entity itself (a point entity is always whole)
    start,         ///< "start"
    end,           ///< "end"
    centre,        ///< "centre"
    mid,           ///< "mid": the middle of a line or arc
    control,       ///< "control:i": control point i of a spline
    segment,       ///< "segment:i": segment i of a polyline as a curve, i counted from 0
    segmentStart,  ///< "segment:i.start": the vertex at which segment i starts
    segmentEnd,    ///< "segment:i.end"
    segmentMid,    ///< "segment:i.mid"
    segmentCentre  ///< "segment:i.centre": the centre of an arc segment
};

/// The end of a curve for its start, and the other way round; any other kind as it is.
constexpr PlaceKind otherEnd(PlaceKind kind) {
    if (kind == PlaceKind::start)
        return PlaceKind::end;
    return kind == PlaceKind::end ? PlaceKind::start : kind;
}

}  // namespace holdfast::geometry
