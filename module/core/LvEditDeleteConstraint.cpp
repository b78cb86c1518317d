#include "core/LvEditDeleteConstraint.h"

#include "core/EndRules.h"
#include "core/GroupSurvey.h"
#include "core/KeepOrDelete.h"
#include "core/OpenAs.h"
#include "core/Reactors.h"
#include "core/SegmentFinder.h"
#include "core/SplineIndices.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbEntity.h>

using holdfast::module::Collected;
using holdfast::module::GroupSurvey;
using holdfast::module::openAs;

// KEEP: an own destructor that frees no constraint; the collection names them only
// (DeleteConstraint.LeavesTheGroupAloneWhenTheCentreEnds).
LvEditDeleteConstraint::~LvEditDeleteConstraint() = default;

int LvEditDeleteConstraint::deleteConstraint() {
    if (m_deleteConstraints.isEmpty())
        return 0;
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId, YxDb::kForWrite);
    if (group.isNull())
        return 0;
    for (YxGeomConstraint* constraint : m_deleteConstraints)
        group->deleteConstraint(constraint);
    const int count = m_deleteConstraints.length();
    m_deleteConstraints.setLogicalLength(0);
    return count;
}

bool LvEditDeleteConstraint::hasAssocConstraint(YxDbObjectId entityId) {
    const auto entity = openAs<YxDbEntity>(entityId);
    if (entity.isNull())
        return false;
    for (const YxDbObjectId& reactor : holdfast::module::persistentReactorIds(entity.get())) {
        if (holdfast::module::isGeomDependency(reactor))
            return true;
    }
    return false;
}

void LvEditDeleteConstraint::removeGeomPersistentReactor(YxDbObject* object) {
    if (object == nullptr)
        return;
    for (const YxDbObjectId& reactor : holdfast::module::persistentReactorIds(object)) {
        if (holdfast::module::isGeomDependency(reactor))
            object->removePersistentReactor(reactor);
    }
}

void LvEditDeleteConstraint::getGeomPersistentReactors(const YxDbEntity* entity,
                                                       YxArray<YxDbAssocGeomDependency*>& dependencies) {
    if (entity != nullptr)
        holdfast::module::listGeomDependencies(*entity, dependencies);
}

void LvEditDeleteConstraint::getConstraintsFromDependency(YxDbAssoc2dConstraintGroup* group,
                                                          const YxDbAssocGeomDependency* dependency,
                                                          YxArray<YxGeomConstraint*>& constraints) {
    constraints.setLogicalLength(0);
    if (group != nullptr)
        GroupSurvey(*group).constraintsOn(dependency, constraints);
}

void LvEditDeleteConstraint::getConstraintsTypeFromEntityId(YxDbAssoc2dConstraintGroup* group,
                                                            const YxDbObjectId& entityId,
                                                            YxArray<YxGeomConstraint*>& constraints) {
    if (group != nullptr)
        GroupSurvey(*group).addConstraintsOnEntity(entityId, constraints);
}

void LvEditDeleteConstraint::judgeLineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                       const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                                       const YxArray<YxGePoint3d>& before,
                                                       const YxArray<YxGePoint3d>& after) {
    if (group == nullptr)
        return;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    holdfast::module::judgeLine(survey, dependencies, before, after, collected);
}

void LvEditDeleteConstraint::judgeRayDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                      const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                                      const YxGePoint3d& before, const YxGePoint3d& after) {
    if (group == nullptr)
        return;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    holdfast::module::judgeRay(survey, dependencies, before, after, collected);
}

void LvEditDeleteConstraint::judgeArcDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                      const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                                      const YxArray<YxGePoint3d>& before,
                                                      const YxArray<YxGePoint3d>& after) {
    if (group == nullptr)
        return;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    holdfast::module::judgeArc(survey, dependencies, before, after, collected);
}

bool LvEditDeleteConstraint::processLineIsDeleteConstraint(const YxDbAssoc2dConstraintGroup* group,
                                                           const YxDbAssocGeomDependency* dependency,
                                                           const YxArray<YxGePoint3d>& before,
                                                           const YxArray<YxGePoint3d>& after,
                                                           YxGeomConstraint* constraint) {
    if (group == nullptr || dependency == nullptr || constraint == nullptr)
        return false;
    GroupSurvey survey(*group);
    return holdfast::module::lineConstraintGoes(survey, *dependency, before, after, *constraint);
}

bool LvEditDeleteConstraint::processArcIsDeleteConstraint(const YxDbAssoc2dConstraintGroup* group,
                                                          const YxDbAssocGeomDependency* dependency,
                                                          const YxArray<YxGePoint3d>& before,
                                                          const YxArray<YxGePoint3d>& after,
                                                          YxGeomConstraint* constraint) {
    if (group == nullptr || dependency == nullptr || constraint == nullptr)
        return false;
    GroupSurvey survey(*group);
    return holdfast::module::arcConstraintGoes(survey, *dependency, before, after, *constraint);
}

void LvEditDeleteConstraint::getSplineConstraintIndexs(const YxDbAssoc2dConstraintGroup* group,
                                                       const YxDbAssocGeomDependency* dependency,
                                                       const YxGeomConstraint* constraint, YxArray<int>& indices) {
    if (group == nullptr || dependency == nullptr || constraint == nullptr)
        return;
    GroupSurvey survey(*group);
    holdfast::module::listControlPoints(survey, *dependency, *constraint, indices);
}

bool LvEditDeleteConstraint::getPolylineSegmentPtIdx(const YxDbObjectId& dependencyId, const YxDbPolyline* polyline,
                                                     int& startIndex, int& endIndex) {
    holdfast::module::SegmentEnds ends;
    if (!holdfast::module::SegmentFinder(polyline).find(dependencyId, ends))
        return false;
    startIndex = ends.start;
    endIndex = ends.end;
    return true;
}

void LvEditDeleteConstraint::getImplicitPointByConstraint(const YxDbAssoc2dConstraintGroup* group,
                                                          const YxDbAssocGeomDependency* dependency,
                                                          const YxGeomConstraint* constraint,
                                                          YxArray<YxConstrainedGeometry*>& points) {
    if (group == nullptr || dependency == nullptr || constraint == nullptr)
        return;
    GroupSurvey(*group).implicitPointsOn(*dependency, *constraint, points);
}

bool LvEditDeleteConstraint::processOneImplicitPointOnEntity(const YxConstrainedImplicitPoint* point,
                                                             const YxGePoint3d& startBefore,
                                                             const YxGePoint3d& endBefore,
                                                             const YxGePoint3d& startAfter,
                                                             const YxGePoint3d& endAfter) {
    if (point == nullptr)
        return false;
    return holdfast::module::onePointGoes(
        point->pointType(), {.start = !startBefore.isEqualTo(startAfter), .end = !endBefore.isEqualTo(endAfter)});
}

bool LvEditDeleteConstraint::processTwoImplicitPointOnArcOrEllipse(const YxArray<YxConstrainedGeometry*>& points,
                                                                   const YxGePoint3d& startBefore,
                                                                   const YxGePoint3d& endBefore,
                                                                   const YxGePoint3d& startAfter,
                                                                   const YxGePoint3d& endAfter) {
    return holdfast::module::twoPointsGo(
        points, {.start = !startBefore.isEqualTo(startAfter), .end = !endBefore.isEqualTo(endAfter)});
}
