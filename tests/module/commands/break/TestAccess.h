#pragma once

#include "commands/break/ConstraintTrimCmdCenter.h"

/// Reaches what the break and trim centres show to nobody.
struct LvTestAccess {
    using Centre = ConstraintBreakCmdCenter;
    using Points = YxArray<YxGePoint3d>;

    static YxArray<YxGeomConstraint*>& collected(Centre& centre) { return centre.m_deleteConstraints; }
    static YxDbObjectId& groupId(Centre& centre) { return centre.m_groupId; }
    static double& startParam(Centre& centre) { return centre.m_startParam; }
    static double& endParam(Centre& centre) { return centre.m_endParam; }
    static int& breakCase(Centre& centre) { return centre.m_breakCase; }
    static int& lastVertexId(Centre& centre) { return centre.m_lastVertexId; }
    static YxArray<int>& vertexIds(Centre& centre) { return centre.m_vertexIds; }
    static std::map<int, int>& touched(Centre& centre) { return centre.m_vertexIdMap; }
    static YxArray<Centre::PolySegmentRecord>& staying(Centre& centre) { return centre.m_polyDepRecords; }
    static YxArray<Centre::PolySegmentRecord>& moved(Centre& centre) { return centre.m_movedDepRecords; }

    static void setFirstPoly(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                             const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxDbEntity* uncut,
                             const YxDbEntity* piece) {
        centre.setFirstPoly(group, dependencies, uncut, piece);
    }
    static bool judgeSegment(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                             const YxDbAssocGeomDependency* dependency, const Points& before, const Points& after) {
        return centre.judgePolyDeleteConstraint(group, dependency, before, after);
    }
    static void judgeSpline(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                            const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxDbSpline* before,
                            const YxDbSpline* after) {
        centre.judgeSplineDeleteConstraint(group, dependencies, before, after);
    }
    static void deleteCoincidence(Centre& centre, const YxDbAssocGeomDependency* dependency,
                                  const YxDbPolyline* piece) {
        centre.deleteCoincidenceConstraint(dependency, piece);
    }
};
