#pragma once

#include <cstddef>
#include <string>

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// A fillet of two segments of one polyline. The arc leads from one of them on to the other; what lies between them in
/// that direction vanishes.
struct SegmentFillet {
    using Mode = ConstraintFilletCmdCenter::PolylineTrimMode;

    Mode mode = Mode::kNothing;
    std::size_t seam = 0;       ///< the vertex from which the polyline is counted during the fillet
    std::size_t first = 0;      ///< start vertex of the lower segment, counted from there
    std::size_t second = 0;     ///< start vertex of the higher one
    bool sharp = false;         ///< a corner without an arc
    PolylineShape counted{};    ///< the polyline counted from the seam
    PolylineShape edited{};     ///< after the fillet
    std::size_t vanishing = 0;  ///< this many vertices behind first + 1 vanish once the centre has seen the fillet
};

/// Rounds the corner between two neighbours at a vertex. With radius 0 nothing changes. EditError where the polyline
/// has no such corner, where the arc does not fit between its segments or one of them would vanish.
SegmentFillet cornerFillet(const std::string& name, const PolylineShape& polyline, int corner, double radius);

/// Cuts the corner between two neighbours off: a length of the segment that leads to it, and one of that behind it.
/// EditError as above.
SegmentFillet cornerChamfer(const std::string& name, const PolylineShape& polyline, int corner, double before,
                            double behind);

/// Leads an arc, or with radius 0 a sharp corner, from the end of one segment to the start of another. Neighbours are
/// filleted at their corner. An open polyline is closed when the arc leads from its last segment to its first; else its
/// segments are taken in its own order. EditError as above.
SegmentFillet segmentFillet(const std::string& name, const PolylineShape& polyline, int from, int to, double radius);

/// The polyline counted from another vertex; only for closed ones.
PolylineShape countedFrom(PolylineShape polyline, std::size_t vertex);

}  // namespace holdfast::editing
