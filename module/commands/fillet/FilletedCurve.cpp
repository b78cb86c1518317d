#include "commands/fillet/FilletedCurve.h"

#include "core/CurveEnds.h"
#include "core/SplineIndices.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>
#include <yxdb/YxDbXline.h>

namespace holdfast::module {
namespace {

template <class T>
const T* as(const YxDbEntity& entity) {
    return entity.isKindOf(T::desc()) ? static_cast<const T*>(&entity) : nullptr;
}

// KEEP: appended whole, without a look at what was collected before (FilletCurve.AppendsTheWholeListBesideItself).
void loseAll(const FilletedCurve& curve) {
    curve.collected.append(curve.allConstraints);
}

void filletLine(const FilletedCurve& curve) {
    const YxDbLine* after = as<YxDbLine>(curve.after);
    if (after == nullptr)
        return;
    Collected collected(curve.collected);
    const auto& before = static_cast<const YxDbLine&>(curve.before);
    judgeLine(curve.survey, curve.dependencies, lineEnds(before), lineEnds(*after), collected);
}

// Polylines have their own operations.
void filletPolyline(const FilletedCurve&) {}

void filletRay(const FilletedCurve& curve) {
    const YxDbRay* after = as<YxDbRay>(curve.after);
    if (after == nullptr)
        return loseAll(curve);
    Collected collected(curve.collected);
    const auto& before = static_cast<const YxDbRay&>(curve.before);
    judgeRay(curve.survey, curve.dependencies, before.basePoint(), after->basePoint(), collected);
}

void filletXline(const FilletedCurve& curve) {
    if (as<YxDbXline>(curve.after) == nullptr)
        loseAll(curve);
}

void judgeArcEnds(const FilletedCurve& curve, const YxDbCurve& after) {
    Collected collected(curve.collected);
    const auto& before = static_cast<const YxDbCurve&>(curve.before);
    judgeArc(curve.survey, curve.dependencies, curveEnds(before), curveEnds(after), collected);
}

void filletArc(const FilletedCurve& curve) {
    if (const YxDbArc* after = as<YxDbArc>(curve.after))
        judgeArcEnds(curve, *after);
}

void filletEllipse(const FilletedCurve& curve) {
    const YxDbEllipse* after = as<YxDbEllipse>(curve.after);
    if (after == nullptr)
        return loseAll(curve);
    if (!static_cast<const YxDbEllipse&>(curve.before).isClosed())
        return judgeArcEnds(curve, *after);
    if (!after->isClosed())
        loseAll(curve);
}

void filletSpline(const FilletedCurve& curve) {
    static const SplineConstraint kNothingRecorded;
    const SplineConstraint* record = &kNothingRecorded;
    for (const SplineConstraint& candidate : curve.splineRecords) {
        if (candidate.spline != nullptr && candidate.spline->objectId() == curve.after.objectId())
            record = &candidate;
    }
    judgeRecordedSpline(*record, curve.after, curve.allConstraints, curve.collected);
}

struct ClassRule {
    YxRxClass* (*classBefore)();
    void (*judge)(const FilletedCurve& curve);
};

// The first class that matches wins; of any other class nothing is collected.
// clang-format off
constexpr ClassRule kClassRules[] = {
    {YxDbLine::desc,     filletLine},
    {YxDbPolyline::desc, filletPolyline},
    {YxDbRay::desc,      filletRay},
    {YxDbXline::desc,    filletXline},
    {YxDbArc::desc,      filletArc},
    {YxDbEllipse::desc,  filletEllipse},
    {YxDbSpline::desc,   filletSpline},
};
// clang-format on

YxGePoint3d controlPoint(const YxDbSpline& spline, int index) {
    YxGePoint3d point;
    spline.getControlPointAt(index, point);
    return point;
}

YxArray<YxGePoint3d> controlPoints(const YxDbSpline& spline, const YxArray<int>& indices) {
    YxArray<YxGePoint3d> points(indices.length());
    for (const int index : indices)
        points.append(controlPoint(spline, index));
    return points;
}

bool anyMoved(const YxDbSpline& spline, const YxArray<int>& indices, const YxArray<YxGePoint3d>& points) {
    if (indices.length() != points.length())
        return true;
    for (int k = 0; k < indices.length(); ++k) {
        if (!controlPoint(spline, indices[k]).isEqualTo(points[k]))
            return true;
    }
    return false;
}

bool canBePaired(const SplineConstraint& record, const YxDbSpline* spline, int constraintCount) {
    return spline != nullptr && constraintCount == record.indices.length() &&
           spline->numControlPoints() == record.controlPointCount;
}

}  // namespace

void judgeFilletedCurve(const FilletedCurve& curve) {
    for (const ClassRule& rule : kClassRules) {
        if (curve.before.isKindOf(rule.classBefore()))
            return rule.judge(curve);
    }
}

SplineConstraint splineRecord(GroupSurvey& survey, const Dependencies& dependencies, const YxDbSpline& spline) {
    SplineConstraint record{.spline = &spline, .controlPointCount = spline.numControlPoints()};
    survey.expect(dependencies);
    YxArray<YxGeomConstraint*> constraints;
    YxArray<int> indices;
    for (const YxDbAssocGeomDependency* dependency : dependencies) {
        survey.constraintsOn(dependency, constraints);
        for (const YxGeomConstraint* constraint : constraints) {
            listControlPoints(survey, *dependency, *constraint, indices);
            appendGrowing(record.indices, indices);
            appendGrowing(record.points, controlPoints(spline, indices));
        }
    }
    return record;
}

void judgeRecordedSpline(const SplineConstraint& record, const YxDbEntity& spline,
                         const YxArray<YxGeomConstraint*>& constraints, YxArray<YxGeomConstraint*>& collected) {
    const YxDbSpline* after = as<YxDbSpline>(spline);
    if (!canBePaired(record, after, constraints.length())) {
        collected.append(constraints);
        return;
    }
    // KEEP: by position only, although the record was made in another order when a constraint stands on two
    // dependencies (FilletSpline.PairsConstraintsWithTheRecordByPositionOnly).
    Collected once(collected);
    for (int k = 0; k < constraints.length(); ++k) {
        if (anyMoved(*after, record.indices[k], record.points[k]))
            once.add(constraints[k]);
    }
}

}  // namespace holdfast::module
