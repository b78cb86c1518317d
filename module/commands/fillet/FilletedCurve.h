#pragma once

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "core/KeepOrDelete.h"

namespace holdfast::module {

using SplineConstraint = ConstraintFilletCmdCenter::SplineConstraint;

/// One curve before and after a fillet, and what hangs on it.
struct FilletedCurve {
    GroupSurvey& survey;
    const YxDbEntity& before;
    const YxDbEntity& after;
    const Dependencies& dependencies;
    const YxArray<YxGeomConstraint*>& allConstraints;
    const YxArray<SplineConstraint>& splineRecords;
    YxArray<YxGeomConstraint*>& collected;
};

/// Collects what the fillet made false, by the class that the curve had before.
void judgeFilletedCurve(const FilletedCurve& curve);

/// Where the constraints of a spline hold now.
SplineConstraint splineRecord(GroupSurvey& survey, const Dependencies& dependencies, const YxDbSpline& spline);

/// Pairs the constraints with the record by position and collects those of which a control point moved. Other numbers
/// of constraints or control points than recorded: all of them are appended, without a look at what was collected
/// before.
void judgeRecordedSpline(const SplineConstraint& record, const YxDbEntity& spline,
                         const YxArray<YxGeomConstraint*>& constraints, YxArray<YxGeomConstraint*>& collected);

}  // namespace holdfast::module
