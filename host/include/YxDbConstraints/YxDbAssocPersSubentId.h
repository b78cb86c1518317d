#pragma once

#include <YxDbConstraints/YxDbSubentId.h>
#include <yxbase/YxArray.h>
#include <yxbase/YxErrorStatus.h>
#include <yxbase/YxRxObject.h>

class YxDbEntity;

/// Names a part of an entity so that the name survives edits.
class YxDbAssocPersSubentId : public YxRxObject {
    YX_DECLARE_CLASS();
};

/// Names a polyline's segment by the vertex identifiers (not indices) of its two ends.
class YxDbAssocEdgePersSubentId : public YxDbAssocPersSubentId {
    YX_DECLARE_CLASS();

public:
    int index1() const;
    int index2() const;

private:
    friend struct holdfast::HostAccess;
    int m_index1 = 0;
    int m_index2 = 0;
};

/// The protocol extension of entities that builds persistent names and lists an entity's parts.
class YxDbAssocPersSubentIdPE : public YxRxObject {
    YX_DECLARE_CLASS();

public:
    /// All parts of one kind. Fills the array from its start.
    virtual Yxrt::ErrorStatus getAllSubentities(const YxDbEntity* entity, YxDb::SubentType type,
                                                YxArray<YxDbSubentId>& parts) const = 0;
};
