#pragma once

#include <functional>

#include "geometry/CurveEnd.h"
#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

// How open splines end elsewhere; for Extending.h, which says what callers may expect.

/// A spline whose end is moved to a parameter inside or beyond it. Beyond: with the control points that do not belong
/// to the outermost span as they were, to the last bit, and as many of them; only where a weight would vanish, with
/// further spans.
SplineShape splineWithEndAt(const SplineShape& spline, CurveEnd end, double param);

/// Calls `visit` with stretch after stretch of what lies beyond an end on the curve of the outermost span, each as a
/// spline with the parameters that it would have, until `visit` answers true, the curve runs off to infinity, or 64
/// spans (a million where it is straight) are passed.
void followBeyond(const SplineShape& spline, CurveEnd end, const std::function<bool(const SplineShape&)>& visit);

/// A spline led to any point: along the outermost span where that passes it, else by a further span.
SplineShape splineExtendedTo(const SplineShape& spline, CurveEnd end, Vec2 point);

}  // namespace holdfast::geometry
