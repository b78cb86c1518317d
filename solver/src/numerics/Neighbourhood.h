#pragma once

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

/// Unknowns around others, ring by ring: two are neighbours when one equation reads both. The cost of every call
/// follows what it visits, not the system.
class Neighbourhood {
public:
    explicit Neighbourhood(const EquationSystem& system);

    /// Unknowns that nothing passes through and that are never part of a ring.
    void block(std::span<const int> unknowns);
    void unblock();

    struct Rings {
        std::vector<int> unknowns;  ///< the seeds first, then ring after ring; blocked ones left out
        bool isWhole = false;       ///< the connected part has no more, and no hub was left out
    };

    /// The seeds and everything up to so many steps away, without unknowns that very many equations read as long as
    /// the steps are few. Blocked seeds spread, but are not among the result.
    Rings around(std::span<const int> seeds, int steps);

    /// The whole connected part around the seeds.
    std::vector<int> partOf(std::span<const int> seeds);

private:
    bool visit(int unknown);

    const EquationSystem& m_system;
    std::vector<int> m_seenAt;          ///< per unknown: the call that saw it last
    std::vector<int> m_equationSeenAt;  ///< per equation
    std::vector<char> m_isBlocked;
    std::vector<int> m_blocked;
    int m_call = 0;
};

}  // namespace holdfast::solver::detail
