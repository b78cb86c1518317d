#include "editing/fates/DeletionReasons.h"

#include <algorithm>

#include "document/DrawingChange.h"
#include "editing/fates/PlaceReasons.h"

namespace holdfast::editing {

void DeletionReasons::note(const std::string& constraint, std::string reason) {
    m_own[constraint] = std::move(reason);
}

void DeletionReasons::noteEdited(const std::string& entity, const std::string& done,
                                 const std::vector<std::string>& left) {
    EditedCurve& curve = m_edited[entity];
    curve.done = done;
    for (const std::string& piece : left.empty() ? std::vector{entity} : left)
        if (!piece.empty() && std::find(curve.left.begin(), curve.left.end(), piece) == curve.left.end())
            curve.left.push_back(piece);
}

void DeletionReasons::noteAtOnce(Drawing& drawing) {
    const std::vector<Deletion>& deletions = drawing.deletions();
    for (; m_seen < deletions.size(); ++m_seen)
        if (deletions[m_seen].by == Deletion::By::module)
            m_atOnce.insert(deletions[m_seen].constraint.id);
}

std::string DeletionReasons::reasonOf(const Deletion& deletion, PlaceReasons& places) const {
    const Constraint& constraint = deletion.constraint;
    if (deletion.by == Deletion::By::lostPlace && !deletion.at.entity.empty())
        return places.lost(deletion.at);
    if (deletion.by == Deletion::By::erasure && !m_edited.contains(deletion.at.entity))
        return deletion.at.entity + " was erased";
    std::string reason = places.deciding(constraint);
    return reason.empty() ? places.doneTo(constraint, wentAtOnce(constraint.id)) : reason;
}

/// A composite goes because the module or the host had to take one of its members.
void DeletionReasons::noteComposite(const Deletion& deletion) {
    for (const std::string& member : deletion.constraint.members)
        if (const auto found = m_reasons.find(member); found != m_reasons.end()) {
            m_reasons[deletion.constraint.id] = found->second;
            return;
        }
}

void DeletionReasons::noteDeleted(Drawing& drawing) {
    const std::vector<Deletion>& deletions = drawing.deletions();
    m_seen = deletions.size();
    const DrawingChange change = drawing.change();
    PlaceReasons places(change, m_edited);
    const std::size_t first = m_told;
    for (; m_told < deletions.size(); ++m_told)
        m_reasons[deletions[m_told].constraint.id] = reasonOf(deletions[m_told], places);
    for (std::size_t i = first; i < deletions.size(); ++i)
        if (deletions[i].by != Deletion::By::erasure)
            noteComposite(deletions[i]);
    for (const ConstraintChange& constraint : change.constraints)
        if (constraint.after)
            m_reasons.erase(constraint.after->id);
    // The host does not know those that are switched off: they go with their places.
    for (const ConstraintChange& constraint : change.constraints)
        if (!constraint.after && !m_reasons.contains(constraint.before->id))
            if (std::string reason = places.deciding(*constraint.before); !reason.empty())
                m_reasons.emplace(constraint.before->id, std::move(reason));
}

std::string DeletionReasons::reasonOfAdded(const std::string& constraint) const {
    const auto found = m_own.find(constraint);
    return found == m_own.end() ? "made by the edit" : found->second;
}

std::string DeletionReasons::ownReasonOf(const std::string& constraint) const {
    const auto found = m_own.find(constraint);
    return found == m_own.end() ? std::string() : found->second;
}

std::string DeletionReasons::reasonOf(const std::string& constraint) const {
    for (const auto* reasons : {&m_own, &m_reasons})
        if (const auto found = reasons->find(constraint); found != reasons->end())
            return found->second;
    return "the edit took it away";
}

}  // namespace holdfast::editing
