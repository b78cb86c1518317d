#pragma once

#include <map>
#include <string>
#include <vector>

#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// What became of a polyline: an entity for each of its segments, "" for one without a length.
struct ExplodedPolyline {
    PolylineShape shape;
    std::vector<std::string> pieces;

    /// An arc runs counter-clockwise: that of a clockwise segment starts where the segment ends.
    bool isReversed(std::size_t segment) const { return shape.bulges[segment] < 0.0; }
};

/// By the names that the polylines had.
using ExplodedPolylines = std::map<std::string, ExplodedPolyline>;

/// Gives the pieces the constraints that held on the polylines and went with them, under their ids; ties neighbours
/// where they meet, and as tangents where they run smoothly into each other and nothing else says so. `before` is what
/// stood around the polylines. Linear in it, and some diagnoses of what hangs on the pieces where there are tangents.
void carryToPieces(const EditContext& context, const Document& before, const ExplodedPolylines& polylines);

}  // namespace holdfast::editing
