#pragma once

#include "core/LvEditDeleteConstraint.h"

/// Reaches what the base of the clean-up centres shows to derived classes or to nobody.
struct LvTestAccess {
    using Centre = LvEditDeleteConstraint;
    using Points = YxArray<YxGePoint3d>;

    static YxArray<YxGeomConstraint*>& collected(Centre& centre) { return centre.m_deleteConstraints; }
    static YxDbObjectId& groupId(Centre& centre) { return centre.m_groupId; }

    static YxArray<YxDbAssocGeomDependency*> reactors(
        const YxDbEntity* entity, YxArray<YxDbAssocGeomDependency*> former = YxArray<YxDbAssocGeomDependency*>()) {
        Centre().getGeomPersistentReactors(entity, former);
        return former;
    }
    static YxArray<YxGeomConstraint*> onDependency(YxDbAssoc2dConstraintGroup* group,
                                                   const YxDbAssocGeomDependency* dependency,
                                                   YxArray<YxGeomConstraint*> former = YxArray<YxGeomConstraint*>()) {
        Centre().getConstraintsFromDependency(group, dependency, former);
        return former;
    }
    static YxArray<YxGeomConstraint*> onEntity(YxDbAssoc2dConstraintGroup* group, const YxDbObjectId& entity,
                                               YxArray<YxGeomConstraint*> former = YxArray<YxGeomConstraint*>()) {
        Centre().getConstraintsTypeFromEntityId(group, entity, former);
        return former;
    }
    static YxArray<YxConstrainedGeometry*> implicitPoints(
        const YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
        const YxGeomConstraint* constraint,
        YxArray<YxConstrainedGeometry*> former = YxArray<YxConstrainedGeometry*>()) {
        Centre().getImplicitPointByConstraint(group, dependency, constraint, former);
        return former;
    }
    static YxArray<int> controlPoints(const YxDbAssoc2dConstraintGroup* group,
                                      const YxDbAssocGeomDependency* dependency, const YxGeomConstraint* constraint,
                                      YxArray<int> former = YxArray<int>()) {
        Centre().getSplineConstraintIndexs(group, dependency, constraint, former);
        return former;
    }
    static bool segment(const YxDbObjectId& dependency, const YxDbPolyline* polyline, int& start, int& end) {
        return Centre().getPolylineSegmentPtIdx(dependency, polyline, start, end);
    }

    static void judgeLine(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                          const YxArray<YxDbAssocGeomDependency*>& dependencies, const Points& before,
                          const Points& after) {
        centre.judgeLineDeleteConstraint(group, dependencies, before, after);
    }
    static void judgeRay(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                         const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxGePoint3d& before,
                         const YxGePoint3d& after) {
        centre.judgeRayDeleteConstraint(group, dependencies, before, after);
    }
    static void judgeArc(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                         const YxArray<YxDbAssocGeomDependency*>& dependencies, const Points& before,
                         const Points& after) {
        centre.judgeArcDeleteConstraint(group, dependencies, before, after);
    }
    static bool lineRule(const YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
                         const Points& before, const Points& after, YxGeomConstraint* constraint) {
        return Centre().processLineIsDeleteConstraint(group, dependency, before, after, constraint);
    }
    static bool arcRule(const YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
                        const Points& before, const Points& after, YxGeomConstraint* constraint) {
        return Centre().processArcIsDeleteConstraint(group, dependency, before, after, constraint);
    }
    static bool onePoint(const YxConstrainedImplicitPoint* point, const Points& before, const Points& after) {
        return Centre().processOneImplicitPointOnEntity(point, before[0], before[1], after[0], after[1]);
    }
    static bool twoPoints(const YxArray<YxConstrainedGeometry*>& points, const Points& before, const Points& after) {
        return Centre().processTwoImplicitPointOnArcOrEllipse(points, before[0], before[1], after[0], after[1]);
    }
};
