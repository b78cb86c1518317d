#include "host/model/HostJournal.h"

#include <algorithm>
#include <iterator>

namespace holdfast {

namespace {

struct Wording {
    const char* operation;
    const char* words;  ///< $s: the subject, $a: the arguments
};

// What the journal's text shows; queries are left out.
constexpr Wording kWordings[] = {
    {"openObject", "open $s for $a"},
    {"yxdbOpenObject", "open $s for $a"},
    {"release", "release $s"},
    {"deleteConstraint", "delete $a"},
    {"setIsImplied", "imply $s $a"},
    {"removePersistentReactor", "remove reactor $a from $s"},
    {"YxDbAssocDependency::setStatus", "status of $s: $a"},
    {"YxDbAssocAction::setStatus", "status of $s: $a"},
    {"detachFromObject", "detach $s"},
    {"attachToObject", "attach $s to $a"},
    {"setSubentity", "part of $s: $a"},
    {"setVertexIdentifierAt", "identify vertex of $s"},
    {"transformBy", "transform $s"},
    {"evaluateTopLevelNetwork", "evaluate"},
    {"createInstance", "make converter $a"},
    {"deleteConstraints", "delete constraints"},
};

std::string worded(const Wording& wording, const JournalEntry& entry) {
    std::string text;
    for (const char* at = wording.words; *at != '\0'; ++at) {
        if (*at != '$') {
            text += *at;
            continue;
        }
        ++at;
        text += *at == 's' ? entry.subjectName : entry.arguments;
    }
    return text;
}

const Wording* wordingOf(const JournalEntry& entry) {
    const auto found = std::find_if(std::begin(kWordings), std::end(kWordings), [&](const Wording& wording) {
        return namesOperation(entry.operation, wording.operation);
    });
    return found == std::end(kWordings) ? nullptr : found;
}

}  // namespace

bool namesOperation(std::string_view operation, std::string_view name) {
    if (operation == name)
        return true;
    return operation.size() > name.size() + 1 && operation.ends_with(name) &&
           operation[operation.size() - name.size() - 1] == ':';
}

int HostJournal::count(std::string_view operation) const {
    return static_cast<int>(std::count_if(m_entries.begin(), m_entries.end(), [&](const JournalEntry& entry) {
        return namesOperation(entry.operation, operation);
    }));
}

std::string HostJournal::text() const {
    std::string text;
    for (const JournalEntry& entry : m_entries)
        if (const Wording* wording = wordingOf(entry))
            text += (text.empty() ? "" : "; ") + worded(*wording, entry);
    return text;
}

std::string HostJournal::text(const std::vector<std::string>& operations) const {
    HostJournal chosen;
    for (const JournalEntry& entry : m_entries)
        if (std::any_of(operations.begin(), operations.end(),
                        [&](const std::string& name) { return namesOperation(entry.operation, name); }))
            chosen.add(entry);
    return chosen.text();
}

}  // namespace holdfast
