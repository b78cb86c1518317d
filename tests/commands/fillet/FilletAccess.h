#pragma once

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "host/src/EntityAccess.h"
#include "tests/support/TestScene.h"

/// Reaches what the fillet centre shows to nobody.
struct LvTestAccess {
    using Centre = ConstraintFilletCmdCenter;
    static YxArray<YxGeomConstraint*>& collected(Centre& centre) { return centre.m_deleteConstraints; }
    static YxDbObjectId& groupId(Centre& centre) { return centre.m_groupId; }
    static YxArray<YxDbEntity*>& clones(Centre& centre) { return centre.m_entityClones; }
    static YxArray<const YxDbEntity*>& entities(Centre& centre) { return centre.m_entities; }
    static YxArray<Centre::PolyInfo>& firstInfos(Centre& centre) { return centre.m_firstPolyInfos; }
    static YxArray<Centre::PolyInfo>& secondInfos(Centre& centre) { return centre.m_secondPolyInfos; }
    static YxArray<Centre::SplineConstraint>& splines(Centre& centre) { return centre.m_splineConstraints; }
    static int trimMode(const Centre& centre) { return centre.m_trimMode; }
    static bool flag(const Centre& centre) { return centre.m_selfFilletFlag; }
    static void deleteCoincidence(Centre& centre, YxDbAssoc2dConstraintGroup* group,
                                  const YxDbAssocGeomDependency* dependency) {
        centre.deleteCoincidenceConstraint(group, dependency);
    }
    static void setReverseCloneInfo(Centre& centre, YxDbPolyline* clone, YxArray<Centre::PolyInfo>& infos) {
        centre.setReverseCloneInfo(clone, infos);
    }
};

namespace holdfast {

using Centre = ConstraintFilletCmdCenter;

/// While it lives, an object is open for write.
class OpenForWrite {
public:
    explicit OpenForWrite(const YxDbObjectId& id)
        : m_object(YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false)) {}

private:
    YxSmartPtr<YxDbObject> m_object;
};

}  // namespace holdfast
