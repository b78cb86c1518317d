#pragma once

#include "commands/extend/ConstraintExtendCmdCenter.h"

/// Reaches what the extend centre shows to nobody.
struct LvTestAccess {
    using Centre = ConstraintExtendCmdCenter;
    using Dependencies = YxArray<YxDbAssocGeomDependency*>;

    static YxArray<YxGeomConstraint*>& collected(Centre& centre) { return centre.m_deleteConstraints; }
    static YxDbObjectId& groupId(Centre& centre) { return centre.m_groupId; }
    static YxDbSpline*& snapshot(Centre& centre) { return centre.m_splineSnapshot; }

    static void judgePolyline(Centre& centre, YxDbAssoc2dConstraintGroup* group, const Dependencies& dependencies,
                              const YxDbEntity* entity, const YxGePoint3d& point, int end) {
        centre.judgePolyLineDeleteConstraint(group, dependencies, entity, point, end);
    }
    static void judgeSpline(Centre& centre, YxDbAssoc2dConstraintGroup* group, const Dependencies& dependencies,
                            const YxDbEntity* entity, const YxGePoint3d& point, int end) {
        centre.judgeSplineDeleteConstraint(group, dependencies, entity, point, end);
    }
    static YxArray<YxGePoint3d> afterPoints(const YxGePoint3d& start, const YxGePoint3d& end, const YxGePoint3d& point,
                                            int code, YxArray<YxGePoint3d> former) {
        Centre().getEditAfterPoints(start, end, point, code, former);
        return former;
    }
};
