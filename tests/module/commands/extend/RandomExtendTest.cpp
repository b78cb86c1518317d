#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "tests/module/commands/extend/ExtendCommand.h"
#include "tests/module/commands/extend/TestAccess.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/PlainCurves.h"
#include "tests/module/core/RandomCurves.h"
#include "tests/module/core/RandomNetwork.h"

namespace holdfast::module {
namespace {

std::vector<YxGeomConstraint*> listed(const YxArray<YxGeomConstraint*>& array) {
    return {array.begin(), array.end()};
}

/// What an extension of the polyline's end collects, step by step.
plain::Constraints plainlyCollected(CheckedScene& scene, const YxGePoint3d& newEnd, int code) {
    const auto& polyline = *scene.entity<YxDbPolyline>("p");
    const int last = static_cast<int>(polyline.numVerts()) - 1;
    plain::Constraints collected;
    for (const YxDbAssocGeomDependency* dependency : plain::dependenciesOf(polyline)) {
        plain::Ends ends;
        if (!plain::segmentOf(*dependency, polyline, ends) ||
            !((ends.start == 0 && code == 1) || (ends.end == last && code == 2)))
            continue;
        const plain::Points before = {plain::pointAt(polyline, ends.start), plain::pointAt(polyline, ends.end)};
        plain::Points after = before;
        after[code == 1 ? 0 : 1] = newEnd;
        plain::segmentRule(scene.group(), *dependency, before, after, collected);
        return collected;
    }
    return collected;
}

RC_GTEST_PROP(RandomExtend, OfAPolylineCollectsAsPlainStepsDo, ()) {
    CheckedScene scene(randomPolyline(2, true).text);
    const int code = *rc::gen::inRange(0, 4);
    const YxGePoint3d newEnd{*rc::gen::inRange(-1, 2) * 10.0, *rc::gen::inRange(0, 3) * 10.0, 0};
    const bool isConstrained = !plain::constraintsOnEntity(scene.group(), *scene.entity("p")).empty();
    const plain::Constraints expected = isConstrained ? plainlyCollected(scene, newEnd, code) : plain::Constraints();
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("p"), newEnd, code);
    RC_ASSERT(listed(LvTestAccess::collected(centre)) == expected);
}

RC_GTEST_PROP(RandomExtend, OfALineLeavesWhatHoldsAtTheOtherEnd, ()) {
    const auto constraints = *rc::gen::container<std::vector<std::string>>(randomConstraint({"a", "b", "c"}));
    const int code = *rc::gen::inRange(1, 3);
    std::string text = "line b 0,0 0,5; line c 3,3 4,5; line a 0,0 10,1";
    for (const std::string& constraint : constraints)
        text += "; " + constraint;
    CheckedScene scene(text);
    const plain::Points before = {{0, 0, 0}, {10, 1, 0}};
    plain::Points after = before;
    after[code == 1 ? 0 : 1] = code == 1 ? YxGePoint3d(-10, -1, 0) : YxGePoint3d(20, 2, 0);
    plain::Constraints expected;
    if (const YxDbAssocGeomDependency* dependency = scene.dependency("a"))
        plain::segmentRule(scene.group(), *dependency, before, after, expected);
    const std::string dependencies = scene.dependencies();
    ConstraintExtendCmdCenter centre;
    RC_ASSERT(extendLine(scene, "a", centre, after[code == 1 ? 0 : 1], code) == static_cast<int>(expected.size()));
    for (const YxGeomConstraint* constraint : expected)
        RC_ASSERT(HostAccess::isDeleted(*constraint));
    RC_ASSERT(scene.dependencies() == dependencies);
    RC_ASSERT(centre.deleteConstraint() == 0);
}

/// The ends as they will be, if the code names one.
plain::Points endsAfter(plain::Points ends, const YxGePoint3d& newEnd, int code) {
    ends.at(code == 1 ? 0 : 1) = newEnd;
    return ends;
}

/// What the control point that moves takes with it.
void judgeSpline(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& spline, const YxGePoint3d& newEnd, int code,
                 plain::Constraints& collected) {
    const auto controlPoints = plain::controlPointsOf(spline);
    const int extended = code == 2 ? static_cast<int>(controlPoints.size()) - 1 : 0;
    for (const YxDbAssocGeomDependency* dependency : plain::dependenciesOf(spline)) {
        for (YxGeomConstraint* constraint : plain::constraintsOn(group, *dependency)) {
            const std::vector<int> indices = plain::controlPointsAt(group, *dependency, *constraint);
            if (std::count(indices.begin(), indices.end(), extended) > 0 &&
                !controlPoints[static_cast<std::size_t>(extended)].isEqualTo(newEnd))
                plain::addOnce(collected, constraint);
        }
    }
}

/// What an extension of curve a collects while it is unchanged, step by step.
plain::Constraints plainlyCollected(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& curve, CurveKind kind,
                                    const YxGePoint3d& newEnd, int code) {
    const plain::Constraints all = plain::constraintsOnEntity(group, curve);
    const bool namesEnd = code == 1 || code == 2;
    plain::Constraints collected;
    if (all.empty())
        return collected;
    if (kind == CurveKind::ray)
        plain::judgeRay(group, curve, {0, 0, 0}, newEnd, collected);
    else if (kind == CurveKind::spline)
        judgeSpline(group, curve, newEnd, code, collected);
    else if (kind == CurveKind::line && namesEnd)
        plain::judgeLine(group, curve, plain::endsOf(curve), endsAfter(plain::endsOf(curve), newEnd, code), collected);
    else if ((kind == CurveKind::arc || kind == CurveKind::ellipticalArc) && namesEnd)
        plain::judgeArc(group, curve, plain::endsOf(curve), endsAfter(plain::endsOf(curve), newEnd, code), collected);
    else if (kind == CurveKind::ellipse && namesEnd && !newEnd.isEqualTo(plain::endsOf(curve).at(code == 1 ? 1 : 0)))
        collected = all;
    return collected;
}

RC_GTEST_PROP(RandomExtend, OfAnyCurveDeletesWhatPlainStepsCollect, ()) {
    const RandomCurve curve = randomCurve("a");
    CheckedScene scene(randomScene({curve}));
    const CurveEdit edit = curve.edit();
    const int code = *rc::gen::inRange(0, 4);
    const auto& entity = *scene.entity("a");
    const bool isXline = curve.kind == CurveKind::xline;
    const plain::Points ends = isXline ? plain::Points(2) : plain::endsOf(entity);
    const YxGePoint3d newEnd = *rc::gen::elementOf(plain::Points{ends[0], ends[1], {-7, 7, 0}});
    plain::Constraints expected = plainlyCollected(scene.group(), entity, curve.kind, newEnd, code);
    const bool changesInNumber = curve.kind == CurveKind::spline && edit.spline.control.size() != 5;
    const plain::Constraints all = plain::constraintsOnEntity(scene.group(), entity);
    if (changesInNumber && !all.empty())
        expected = all;
    const std::string dependencies = scene.dependencies();
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), newEnd, code);
    const int deleted = finishExtend<YxDbEntity>(scene, "a", centre, [&](YxDbEntity& open) {
        if (curve.kind == CurveKind::spline)
            EntityAccess::setSpline(static_cast<YxDbSpline&>(open), edit.spline);
    });
    RC_ASSERT(deleted == static_cast<int>(expected.size()));
    for (const YxGeomConstraint* constraint : all) {
        const bool goes = std::count(expected.begin(), expected.end(), constraint) > 0;
        RC_ASSERT(HostAccess::isDeleted(*constraint) == goes);
    }
    RC_ASSERT(scene.dependencies() == dependencies);
    RC_ASSERT(scene.constraints().starts_with("parallel away far; fixed away.end"));
}

}  // namespace
}  // namespace holdfast::module
