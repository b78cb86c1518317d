#pragma once

#include "commands/align/ConstraintAlignCmdCenter.h"
#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "drag/LvConstraintDropData.h"

/// Reads what the centres of the evaluation family keep to themselves.
struct LvTestAccess {
    static const YxGeMatrix3d& transform(const ConstraintAlignCmdCenter& centre) { return centre.centerMat; }
    static const YxArray<YxDbObjectId>& freeObjects(const ConstraintAlignCmdCenter& centre) { return centre.freeObjs; }

    static auto& originals(ConstraintLengthenCmdCenter& centre) { return centre.m_originals; }

    static auto& records(ConstraintPropertiesCmdCenter& centre) { return centre.oriInfos; }
    static int expanderCount(const ConstraintPropertiesCmdCenter& centre) { return centre.expanderCount; }
    static const YxGePoint3d& expanderPoint(const ConstraintPropertiesCmdCenter& centre) {
        return centre.expanderPoint;
    }

    static const YxArray<StretchSpecialInfo>& specials(const ConstraintStretchCmdCenter& centre) {
        return centre.m_specialInfos;
    }

    static void closeOpenedEnts(YxArray<YxDbEntity*>& entities) { LvConstraintDropData::closeOpenedEnts(entities); }
    static void releaseCloneEnts(YxArray<YxDbEntity*>& clones) { LvConstraintDropData::releaseCloneEnts(clones); }
};
