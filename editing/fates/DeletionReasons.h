#pragma once

#include <string>
#include <unordered_map>

#include "document/EntityIndex.h"
#include "editing/LostVertices.h"
#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// Why an edit deletes constraints, noted where it does so. The module deletes in silence: what it has taken is asked
/// for before anything else moves, and the places that a constraint held at before the edit and now tell why.
class DeletionReasons {
public:
    /// A reason that a command knows itself; it stands before any other.
    void note(const std::string& constraint, std::string reason) { m_reasons[constraint] = std::move(reason); }
    /// Notes the constraints that the edit has taken from the drawing and that have no reason yet; forgets those that
    /// are back. Cost: what the edit has touched.
    void noteDeleted(Drawing& drawing);

    /// What was noted about a constraint; without a note, what the drawing before the edit and after it tells.
    std::string reasonOf(const Constraint& constraint, const EntityIndex& before, const EntityIndex& after);

private:
    std::unordered_map<std::string, std::string> m_reasons;
    LostVertices m_lost;  // of the drawing after the edit
};

}  // namespace holdfast::editing
