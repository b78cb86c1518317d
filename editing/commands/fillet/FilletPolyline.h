#pragma once

#include <string>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "editing/commands/cut/PolylineCut.h"
#include "editing/commands/fillet/ChamferGeometry.h"
#include "editing/commands/fillet/FilletCurves.h"
#include "editing/commands/fillet/PolylineCorner.h"

namespace holdfast::editing {

// The host's half of fillets in which polylines take part. EditError, before anything has changed, for what cannot be
// done; an open drawing that is left half edited by another exception is for the caller to put back.

/// A fillet of two segments of one polyline; `done` says so in the reasons of what goes.
void filletWithin(EditContext& context, const std::string& polyline, const SegmentFillet& fillet,
                  const std::string& done = "filleted");

/// What a segment of a polyline and a curve become, and what comes between them.
struct LedPair {
    FilletedSegment segment;
    Shape first;  ///< of the segment
    CurveEnd firstEnd = CurveEnd::end;
    Shape second;  ///< of the curve
    CurveEnd secondEnd = CurveEnd::end;
    std::optional<Shape> between{};
};

/// Leads a polyline and a curve together: the polyline is cut off where the segment ends now. What comes between them
/// is an entity of its own. `done` says so in the reasons of what goes. The names of the polyline, the curve and that.
/// EditError where they would meet too far away.
LedTogether leadPolyline(EditContext& context, const PolylineSide& polyline, const FilletSide& curve,
                         const LedPair& pair, const std::string& done);

/// Cuts the polyline off where the arc touches it. The arc and what is left of the curve stay entities of their own,
/// so that the curve keeps its constraints.
void filletWithCurve(EditContext& context, const PolylineSide& polyline, const FilletSide& curve, double radius);

/// Joins two polylines into the first, with the arc as a segment between them. Only in a sharp corner with a first
/// polyline that carries no constraints, the second takes it in.
void filletPolylines(EditContext& context, const PolylineSide& first, const PolylineSide& second, double radius);

/// The segments of two polylines that a chamfer cuts off, and how.
struct PolylineChamfer {
    FilletedSegment first, second;
    CurveChamfer chamfer;
};

/// Joins two polylines into the first, with the chamfer's line as a segment between them.
void chamferPolylines(EditContext& context, const PolylineSide& first, const PolylineSide& second,
                      const PolylineChamfer& found);

}  // namespace holdfast::editing
