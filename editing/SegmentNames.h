#pragma once

#include <string>

#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

// What the host does for the dependencies on a polyline when it has changed the order of its vertices.

/// A dependency names its segment by the identifiers of both vertices. One of which only a single vertex is left names
/// the segment that starts or ends there, and gets its whole name again; dependencies without constraints and those of
/// removed segments stay as they are. Linear in the polyline and its dependencies.
void renewSegmentNames(Drawing& drawing, const std::string& polyline);

/// The same, and ties the corners between neighbouring constrained segments that have no tie yet.
void settleSegments(Drawing& drawing, const std::string& polyline);

/// Opens a closed polyline at vertex 0, which then stands at both ends, the second time with an identifier of its own.
/// The ends are not tied to each other. Linear as above.
void openSeam(Drawing& drawing, const std::string& polyline);

/// On a polyline that was turned round, the starts of its segments are their ends.
void swapSegmentEnds(Drawing& drawing, const std::string& polyline);

}  // namespace holdfast::editing
