// Who has deleted which constraints of a drawing, and how one comes back.

#include <algorithm>

#include "hosting/Drawing.h"
#include "hosting/HostConstraints.h"
#include "hosting/NamedSegments.h"

namespace holdfast::hosting {

std::optional<Constraint> Drawing::constraintBefore(std::size_t number) const {
    const auto noted = m_constraintsBefore.find(number);
    return noted == m_constraintsBefore.end() ? takenConstraint(number) : noted->second;
}

/// Everything that the host has deleted since this was done last has been deleted by this one.
void Drawing::noteDeletions(Deletion::By by, const Place& at) {
    for (const YxGeomConstraint* constraint : m_hostChanges.deletions)
        if (const auto found = m_constraintNumbers.find(constraint); found != m_constraintNumbers.end())
            if (std::optional<Constraint> before = constraintBefore(found->second))
                m_deletions.push_back({by, std::move(*before), at});
    m_hostChanges.deletions.clear();
}

const std::vector<Deletion>& Drawing::deletions() {
    noteDeletions(Deletion::By::module);
    return m_deletions;
}

/// The place of a constraint before the edit behind one of its geometries in the host.
Place Drawing::placeBefore(const YxGeomConstraint& constraint, std::size_t geometry) const {
    const auto found = m_constraintNumbers.find(&constraint);
    if (found == m_constraintNumbers.end())
        return {};
    const std::optional<Constraint> before = constraintBefore(found->second);
    return before && geometry < before->refs.size() ? before->refs[geometry] : Place{};
}

std::optional<Constraint> Drawing::deletedConstraint(std::string_view id) const {
    const HostProcess::Scope bound(m_process);
    const auto found = m_constraintIndex.find(std::string(id));
    if (found == m_constraintIndex.end())
        return std::nullopt;
    const KnownConstraint& known = m_constraints[found->second];
    if (known.host == nullptr || !HostAccess::isDeleted(*known.host))
        return std::nullopt;
    Segments segments;
    const auto& geometries = HostAccess::geometries(*known.host);
    if (std::any_of(geometries.begin(), geometries.end(),
                    [&](const YxConstrainedGeometry* geometry) { return isLost(*geometry, segments); }))
        return std::nullopt;
    Constraint now = known.original;
    takePlaces(now, *known.host, segments);
    return now;
}

bool Drawing::restoreConstraint(std::string_view id) {
    const HostProcess::Scope bound(m_process);
    if (!deletedConstraint(id))
        return false;
    noteDeletions(Deletion::By::module);
    const std::size_t number = m_constraintIndex.find(std::string(id))->second;
    KnownConstraint& known = m_constraints[number];
    const std::vector<YxConstrainedGeometry*> geometries = HostAccess::geometries(*known.host);
    YxGeomConstraint& made = addHostConstraint(group(), known.original, geometries);
    m_constraintNumbers.emplace(&made, number);
    m_process.name(&made, known.original.id);
    known.host = &made;
    m_isTouched = true;
    return true;
}

}  // namespace holdfast::hosting
