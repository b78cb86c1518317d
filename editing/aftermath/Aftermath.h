#pragma once

#include "document/DrawingChange.h"
#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

struct EditContext;

// What the host does with its own kinds of constraints when a command has ended. The module judges the geometric ones;
// dimensions, midpoints and what ties helper lines to an ellipse are the host's, and so is what holds on the whole of a
// spline, or on control points between its ends, which the module judges only where it is cut.

/// Deletes the driving ones of them that held before the command and that its geometry has made false, and gives
/// measured dimensions of changed entities what they measure now. The same for whatever stands on one of the entities
/// that are judged anew, and for fixed points that are elsewhere. Linear in what the command touched.
void settleOwnConstraints(EditContext& context, const EditedPart& part);

/// Gives measured dimensions of changed entities what they measure now. Linear in what the command touched.
void refreshMeasures(Drawing& drawing, const EditedPart& part);

/// EditError with the name of an entity that the edit has led farther out than a drawing can reach, or made so large.
void refuseBoundless(const EditedPart& part, const std::string& lengthUnit);

/// EditError with the name of a constraint that held before an edit, was kept, and does not hold any more: the host or
/// the solver did not do what they said. Linear in what the edit touched.
void refuseBroken(const EditedPart& part);

}  // namespace holdfast::editing
