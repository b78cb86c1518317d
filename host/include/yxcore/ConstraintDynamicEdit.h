#pragma once

#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObjectId.h>

class AssocConstraintHeader;
namespace holdfast {
struct HostAccess;
}

/// The base of edits that are followed step by step while the user drags.
class ConstraintDynamicEdit {
public:
    ConstraintDynamicEdit();
    ConstraintDynamicEdit(const ConstraintDynamicEdit&) = default;
    ConstraintDynamicEdit& operator=(const ConstraintDynamicEdit&) = default;
    virtual ~ConstraintDynamicEdit();

    /// Called for each step of the drag.
    virtual void addDataToWork();
    /// Fixes the edited objects, and the group and header of the first constrained one among them.
    void setHeader(const YxArray<YxDbObjectId>& ids);

protected:
    friend struct holdfast::HostAccess;
    YxDbObjectId m_groupId;
    AssocConstraintHeader* m_header = nullptr;  ///< borrowed from the data provider
    YxArray<YxDbObjectId> m_editedIds;
    YxArray<void*> m_sourceEntities;  ///< the host's source copies (YxDbEntity*), parallel to m_editedIds; not owned
    YxGeVector3d m_vector;
    YxGeMatrix3d m_matrix;
    int m_firstNumber = 0;
    int m_secondNumber = 0;
};
