#pragma once

#include "editing/Uses.h"
#include "editing/commands/fillet/FilletGeometry.h"

namespace holdfast::editing {

/// Two curves after their chamfer, and the line between their ends.
struct CurveChamfer {
    Shape first, second;
    CurveEnd firstEnd = CurveEnd::end;  ///< which end of the curve is the line's start
    CurveEnd secondEnd = CurveEnd::end;
    LineShape line;
};

/// Leads two curves to the corner that filletCurves finds with radius 0, and cuts each off a length before it, measured
/// along the curve. EditError where they have no such corner, are closed, or are no longer than what is cut off.
CurveChamfer chamferCurves(const FilletSide& a, const FilletSide& b, double firstLength, double secondLength);

/// A curve without a length at one end; EditError when nothing would be left.
Shape cutBack(const std::string& name, const Shape& curve, CurveEnd end, double by);

}  // namespace holdfast::editing
