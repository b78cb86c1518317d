#pragma once

#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

// What the host does with its own kinds of constraints when a command has ended. The module judges the geometric ones;
// dimensions, midpoints and what ties helper lines to an ellipse are the host's, and so is what holds on the whole of a
// spline, or on control points between its ends, which the module judges only where it is cut.

/// Deletes the driving ones of them that held before the command and that its geometry has made false, and gives
/// measured dimensions of changed entities what they measure now. Linear in both states of the drawing.
void settleOwnConstraints(Drawing& drawing, const Document& before);

}  // namespace holdfast::editing
