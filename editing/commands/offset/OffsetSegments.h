#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "editing/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::editing {

/// A segment of an offset chain, and which of the chain's segments it lies beside; none: it rounds a corner.
struct OffsetSegment {
    Vec2 from, to;
    double bulge = 0.0;
    std::optional<std::size_t> origin{};
};

/// A chain beside another one.
struct OffsetChain {
    std::vector<OffsetSegment> segments;  ///< each begins where the one before it ends
    std::vector<std::size_t> vanished;    ///< segments of the chain that have none, ascending
    std::vector<Vec2> roundedOutOfNeed;   ///< corners without a mitre, as the carriers do not meet there
};

/// The chain at a distance to the left of a polyline, of which no segment is without a length; negative: to the right.
/// Corners are mitred: the segments beside a corner are led on to where they meet; or rounded by arcs about the corner.
/// Arcs whose radius the distance takes up vanish, and so do segments that come to nothing between their neighbours.
/// GeometryError where nothing would be left, neighbours do not meet, or the chain would come nearer to some part of
/// the polyline than the distance. Cost: the square of the segments, for that last look.
OffsetChain offsetChain(const PolylineShape& polyline, double distance, bool rounded);

/// The area that a closed polyline encloses, above 0 if it runs counter-clockwise.
double signedArea(const PolylineShape& polyline);

}  // namespace holdfast::editing
