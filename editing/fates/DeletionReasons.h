#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "editing/Uses.h"
#include "editing/fates/EditedCurves.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

class PlaceReasons;

/// Why an edit deletes constraints, noted by who deletes them, when that is done.
///
/// Commands and the host's own rules say it themselves. The module deletes in silence: the host sees each constraint
/// go, and whether that was at once or with what the module had collected, and a command notes what it has told the
/// module about the edited curves. Before anything else moves, the rules by which the module judges them then tell
/// which of the constraint's places it was.
class DeletionReasons {
public:
    /// The reason of who deletes, adds or changes a constraint himself. It stands before any other.
    void note(const std::string& constraint, std::string reason);
    /// A command has the module judge a curve: what is done to it ("cut"), and the entities that are left of it,
    /// without any the entity itself.
    void noteEdited(const std::string& entity, const std::string& done, const std::vector<std::string>& left = {});
    /// What the module has deleted by now went at once, on its way; what it deletes from here on it had collected.
    void noteAtOnce(Drawing& drawing);
    /// Notes the reasons of all that was deleted by now and is not back. Cost: what the edit has touched.
    void noteDeleted(Drawing& drawing);

    /// What was noted by who changed a constraint himself; empty: nothing.
    std::string ownReasonOf(const std::string& constraint) const;
    /// True for a constraint that the module deleted without having collected it.
    bool wentAtOnce(const std::string& constraint) const { return m_atOnce.contains(constraint); }
    /// What was noted about a constraint that the edit has added.
    std::string reasonOfAdded(const std::string& constraint) const;
    /// The curves that commands had the module judge.
    const EditedCurves& editedCurves() const { return m_edited; }
    /// What was noted about a deleted constraint.
    std::string reasonOf(const std::string& constraint) const;

private:
    std::string reasonOf(const Deletion& deletion, PlaceReasons& places) const;
    void noteComposite(const Deletion& deletion);

    std::unordered_map<std::string, std::string> m_own;      // by who deletes himself
    std::unordered_map<std::string, std::string> m_reasons;  // the others
    EditedCurves m_edited;
    std::unordered_set<std::string> m_atOnce;
    std::size_t m_seen = 0, m_told = 0;  // of the drawing's deletions
};

}  // namespace holdfast::editing
