#pragma once

#include "core/KeepOrDelete.h"

class YxDbPolyline;
class YxDbSpline;

namespace holdfast::module {

/// One end of a curve and the place to which EXTEND will move it.
struct ExtendedEnd {
    static constexpr int kStart = 1;
    static constexpr int kEnd = 2;

    YxGePoint3d newPoint;
    int code = 0;  ///< kStart, kEnd; any other: no end is named

    /// The ends as they will be: start, end. Empty when no end is named.
    Points after(const YxGePoint3d& start, const YxGePoint3d& end) const;
};

/// Collects what goes of the constraints on the segment at the extended end: on the first dependency that names it and
/// has constrained geometry. Other segments stay untouched.
void judgeExtendedSegment(GroupSurvey& survey, const Dependencies& dependencies, const YxDbPolyline& polyline,
                          const ExtendedEnd& moved, Collected& collected);

/// Collects the constraints at the last control point for kEnd, at the first for any other code, unless that control
/// point lies at the new place already.
void judgeExtendedSpline(GroupSurvey& survey, const Dependencies& dependencies, const YxDbSpline& spline,
                         const ExtendedEnd& moved, Collected& collected);

}  // namespace holdfast::module
