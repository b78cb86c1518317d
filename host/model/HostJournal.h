#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <yxbase/YxRxObject.h>

namespace holdfast {

/// One call that the host received, with its arguments as they were at that moment.
struct JournalEntry {
    std::string operation;  ///< "YxDbAssoc2dConstraintGroup::deleteConstraint"
    const YxRxObject* subject = nullptr;
    std::string subjectName;
    std::string arguments;
};

/// Every call that the host received, in order.
class HostJournal {
public:
    void add(JournalEntry entry) { m_entries.push_back(std::move(entry)); }
    void clear() { m_entries.clear(); }
    const std::vector<JournalEntry>& entries() const { return m_entries; }

    /// How many calls an operation received; the class may be left out ("deleteConstraint").
    int count(std::string_view operation) const;
    /// The calls that change or open something, one after the other: "open group for write; delete c2; release group".
    std::string text() const;
    /// The same for the calls of some operations only.
    std::string text(const std::vector<std::string>& operations) const;

private:
    std::vector<JournalEntry> m_entries;
};

/// True when an operation is named in full or without its class.
bool namesOperation(std::string_view operation, std::string_view name);

}  // namespace holdfast
