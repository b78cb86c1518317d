#pragma once

#include "commands/fillet/ConstraintFilletCmdCenter.h"

/// Reaches what the fillet centre shows to nobody.
struct LvTestAccess {
    using Centre = ConstraintFilletCmdCenter;
    using Points = YxArray<YxGePoint3d>;

    static YxArray<YxGeomConstraint*>& collected(Centre& centre) { return centre.m_deleteConstraints; }
    static YxDbObjectId& groupId(Centre& centre) { return centre.m_groupId; }
    static unsigned int& firstVertex(Centre& centre) { return centre.m_firstVertexIndex; }
    static unsigned int& secondVertex(Centre& centre) { return centre.m_secondVertexIndex; }
    static bool& flag(Centre& centre) { return centre.m_selfFilletFlag; }
    static Centre::PolylineTrimMode& mode(Centre& centre) { return centre.m_trimMode; }
    static YxArray<Centre::PolyInfo>& firstInfos(Centre& centre) { return centre.m_firstPolyInfos; }
    static YxArray<Centre::PolyInfo>& secondInfos(Centre& centre) { return centre.m_secondPolyInfos; }
    static YxArray<Centre::SplineConstraint>& splines(Centre& centre) { return centre.m_splineConstraints; }
    static YxArray<const YxDbEntity*>& entities(Centre& centre) { return centre.m_entities; }
    static YxArray<YxDbEntity*>& clones(Centre& centre) { return centre.m_entityClones; }

    static void compare(Centre& centre) { centre.setDeleteConstraint(); }
    static void recordSpline(Centre& centre, const YxDbEntity* spline) { centre.setSplineInfo(spline); }
    static void judgeSpline(Centre& centre, const YxDbAssoc2dConstraintGroup* group,
                            const Centre::SplineConstraint& record, const YxDbEntity* spline,
                            const YxArray<YxGeomConstraint*>& constraints) {
        centre.judgeSplineDeleteConstraint(group, record, spline, constraints);
    }
    static void deleteCoincidence(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                                  const YxDbAssocGeomDependency* dependency) {
        centre.deleteCoincidenceConstraint(group, dependency);
    }
    static void reset(Centre& centre) { centre.reset(); }
    static bool judgeSegment(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                             const YxDbAssocGeomDependency* dependency, const Points& before, const Points& after) {
        return centre.judgePolyDeleteConstraint(group, dependency, before, after);
    }
    static void cutOff(Centre& centre, YxArray<Centre::PolyInfo>& infos, YxDbPolyline* polyline, bool dropBefore,
                       unsigned int segmentStart) {
        centre.setOnePolyLineConstraint(infos, polyline, dropBefore, segmentStart, YxGePoint3d());
    }
    static void reverseClone(Centre& centre, YxDbPolyline* clone, YxArray<Centre::PolyInfo>& infos) {
        centre.setReverseCloneInfo(clone, infos);
    }
};
