#pragma once

#include <optional>
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
    /// The drawing before the edit, which has to stay as it is.
    explicit DeletionReasons(const Document& before) : m_before(before) {}

    /// A reason that a command knows itself; it stands before any other.
    void note(const std::string& constraint, std::string reason) { m_reasons[constraint] = std::move(reason); }
    /// Notes the constraints that have gone from the drawing and have no reason yet; forgets those that are back.
    /// Constant when as many constraints are there as at the last call, else linear in the constraints.
    void noteDeleted(const Drawing& drawing);

    /// What was noted about a constraint; without a note, what the drawing after the edit tells.
    std::string reasonOf(const Constraint& constraint, const EntityIndex& after);

private:
    const EntityIndex& entitiesBefore();

    const Document& m_before;
    std::optional<EntityIndex> m_entities;
    std::optional<std::size_t> m_count;  // of the constraints in the host at the last call
    std::unordered_map<std::string, std::string> m_reasons;
    LostVertices m_lost;  // of the drawing after the edit
};

}  // namespace holdfast::editing
