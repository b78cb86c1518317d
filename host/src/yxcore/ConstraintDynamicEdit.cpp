#include <yxcore/ConstraintDynamicEdit.h>

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>

#include "host/src/HostCall.h"
#include "host/src/YxDbConstraints/Provider.h"

ConstraintDynamicEdit::ConstraintDynamicEdit() = default;
ConstraintDynamicEdit::~ConstraintDynamicEdit() = default;

void ConstraintDynamicEdit::addDataToWork() {}

void ConstraintDynamicEdit::setHeader(const YxArray<YxDbObjectId>& ids) {
    if (holdfast::hostCall("ConstraintDynamicEdit::setHeader", nullptr, ids.length()))
        return;
    m_editedIds = ids;
    m_groupId = YxDbObjectId();
    m_header = nullptr;
    for (const YxDbObjectId& id : ids)
        if (m_groupId.isNull())
            m_groupId = holdfast::groupOf(id);
    const YxDbConstraintDataProviderLv* provider = YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance();
    if (m_groupId.isValid() && provider != nullptr)
        m_header = provider->getAssocConstraintHeader(m_groupId);
}
