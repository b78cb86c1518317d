#pragma once

#include <optional>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// What a spline is said to run through.
struct FitPoints {
    std::vector<Vec2> points;                        ///< each apart from the one before it, two at least
    bool isClosed = false;                           ///< from the last one on to the first
    std::optional<Vec2> startTangent, endTangent{};  ///< directions; none: the curve ends without bending
};

/// The cubic spline through points that has continuous curvature, its parameter the length of the chords. (C. de Boor,
/// A Practical Guide to Splines, chapter IV.) Cost: linear in the points.
SplineShape splineThrough(FitPoints fit);

}  // namespace holdfast::formats
