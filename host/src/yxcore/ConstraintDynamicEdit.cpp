#include <yxcore/ConstraintDynamicEdit.h>

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>

#include <mutex>
#include <unordered_map>

#include "host/model/DynamicEdits.h"
#include "host/model/state/HostCall.h"
#include "host/src/YxDbConstraints/Provider.h"

namespace {

/// Edits that have set up a header, by the header. Copies of an edit are not entered. An edit may outlive its header
/// and its process, so that only all threads together can know them.
class EditsByHeader {
public:
    void enter(const AssocConstraintHeader* header, const ConstraintDynamicEdit* edit) {
        const std::lock_guard lock(m_mutex);
        m_edits[header] = edit;
    }
    void forget(const ConstraintDynamicEdit* edit) {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_edits, [edit](const auto& entry) { return entry.second == edit; });
    }
    const ConstraintDynamicEdit* of(const AssocConstraintHeader& header) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_edits.find(&header);
        return found == m_edits.end() ? nullptr : found->second;
    }

private:
    std::mutex m_mutex;
    std::unordered_map<const AssocConstraintHeader*, const ConstraintDynamicEdit*> m_edits;
};

EditsByHeader& editsByHeader() {
    static EditsByHeader edits;
    return edits;
}

}  // namespace

namespace holdfast {

const ConstraintDynamicEdit* dynamicEditOf(const AssocConstraintHeader& header) {
    return editsByHeader().of(header);
}

}  // namespace holdfast

ConstraintDynamicEdit::ConstraintDynamicEdit() = default;

ConstraintDynamicEdit::~ConstraintDynamicEdit() {
    editsByHeader().forget(this);
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
        editsByHeader().enter(m_header, this);
}
