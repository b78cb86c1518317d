#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "solver/src/Uses.h"

namespace holdfast::solver::detail {

struct SketchPlace;

/// The constraints on each entity, kept up to date while constraints are appended and taken back one by one: who looks
/// for what is near an entity need not go through all of them.
class ConstraintLists {
public:
    /// The next constraint is on these places. Cost: theirs.
    void append(std::span<const SketchPlace> places);

    /// Only so many of the first constraints are left. Cost: the places of the others.
    void shorten(std::size_t count) noexcept;

    std::size_t count() const { return m_ends.size(); }

    /// The constraints on an entity, the last one first; one that is on several of its places comes as often.
    template <class See>
    void forEachOn(int entity, See see) const {
        if (static_cast<std::size_t>(entity) >= m_lastOf.size())
            return;
        for (int use = m_lastOf[static_cast<std::size_t>(entity)]; use >= 0;
             use = m_uses[static_cast<std::size_t>(use)].before)
            see(m_uses[static_cast<std::size_t>(use)].constraint);
    }

private:
    struct Use {
        int constraint, entity;
        int before;  ///< the use of the same entity before this one; -1: none
    };

    std::vector<Use> m_uses;
    std::vector<std::size_t> m_ends;  ///< by constraint: behind its last use
    std::vector<int> m_lastOf;        ///< by entity: its last use; may be shorter
};

}  // namespace holdfast::solver::detail
