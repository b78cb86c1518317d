#pragma once

#include "core/KeepOrDelete.h"

class YxDbEntity;
class YxDbSpline;

namespace holdfast::module {

/// One cut of a curve that is no polyline: what stood before, what the first piece is, what hangs on the curve.
struct CurveCut {
    GroupSurvey& survey;
    const YxDbEntity& uncut;
    const YxDbEntity& piece;
    const Dependencies& dependencies;
    const YxArray<YxGeomConstraint*>& allConstraints;  ///< on the uncut curve
    YxArray<YxGeomConstraint*>& collected;
};

/// Collects what the cut made false, by the class of the uncut curve.
void judgeCut(const CurveCut& cut);

/// Collects the constraints of which a control point moved.
void judgeSpline(GroupSurvey& survey, const Dependencies& dependencies, const YxDbSpline& before,
                 const YxDbSpline& after, Collected& collected);

}  // namespace holdfast::module
