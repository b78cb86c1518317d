#include <yxcore/ConstraintDynamicEdit.h>

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>

#include <unordered_map>

#include "host/model/DynamicEdits.h"
#include "host/model/HostCall.h"
#include "host/src/YxDbConstraints/Provider.h"

namespace {

/// Edits that have set up a header, by the header. Copies of an edit are not entered.
std::unordered_map<const AssocConstraintHeader*, const ConstraintDynamicEdit*>& editsByHeader() {
    static std::unordered_map<const AssocConstraintHeader*, const ConstraintDynamicEdit*> edits;
    return edits;
}

}  // namespace

namespace holdfast {

const ConstraintDynamicEdit* dynamicEditOf(const AssocConstraintHeader& header) {
    const auto found = editsByHeader().find(&header);
    return found == editsByHeader().end() ? nullptr : found->second;
}

}  // namespace holdfast

ConstraintDynamicEdit::ConstraintDynamicEdit() = default;

ConstraintDynamicEdit::~ConstraintDynamicEdit() {
    std::erase_if(editsByHeader(), [this](const auto& entry) { return entry.second == this; });
}

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
    if (m_header != nullptr)
        editsByHeader()[m_header] = this;
}
