#include "solver/src/numerics/Neighbourhood.h"

#include <limits>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

constexpr int kEverything = std::numeric_limits<int>::max();

/// An unknown that more equations read than this, for each step, would make everything a neighbour of everything: a
/// radius or a level that many entities share. It stays outside until the rings are wide enough for it.
constexpr int kHub = 8;

}  // namespace

Neighbourhood::Neighbourhood(const EquationSystem& system)
    : m_system(system),
      m_seenAt(at(system.unknownCount), 0),
      m_equationSeenAt(system.set.equations.size(), 0),
      m_isBlocked(at(system.unknownCount), 0) {}

void Neighbourhood::block(std::span<const int> unknowns) {
    for (const int u : unknowns) {
        m_isBlocked[at(u)] = 1;
        m_blocked.push_back(u);
    }
}

void Neighbourhood::unblock() {
    for (const int u : m_blocked)
        m_isBlocked[at(u)] = 0;
    m_blocked.clear();
}

bool Neighbourhood::visit(int unknown) {
    if (m_seenAt[at(unknown)] == m_call)
        return false;
    m_seenAt[at(unknown)] = m_call;
    return true;
}

Neighbourhood::Rings Neighbourhood::around(std::span<const int> seeds, int steps) {
    ++m_call;
    Rings rings;
    std::vector<int> front, next;
    const std::size_t most = steps < kEverything / kHub ? at(kHub * steps) : at(kEverything);
    bool hasLeftOut = false;
    const auto take = [&](int unknown, std::vector<int>& list) {
        if (&list == &next && m_system.equationsOfUnknown[unknown].size() > most) {
            hasLeftOut = hasLeftOut || (m_seenAt[at(unknown)] != m_call && !m_isBlocked[at(unknown)]);
            return;
        }
        if (!visit(unknown))
            return;
        list.push_back(unknown);
        if (!m_isBlocked[at(unknown)])
            rings.unknowns.push_back(unknown);
    };
    for (const int u : seeds)
        take(u, front);
    for (int step = 0; step < steps && !front.empty(); ++step) {
        next.clear();
        for (const int u : front) {
            if (m_isBlocked[at(u)] && step > 0)
                continue;
            for (const int e : m_system.equationsOfUnknown[u]) {
                if (std::exchange(m_equationSeenAt[at(e)], m_call) == m_call)
                    continue;
                for (const int v : m_system.set.inputsOf(m_system.set.equations[at(e)])) {
                    if (m_system.links[at(v)].unknown >= 0)
                        take(m_system.links[at(v)].unknown, next);
                }
            }
        }
        front.swap(next);
    }
    rings.isWhole = front.empty() && !hasLeftOut;
    return rings;
}

std::vector<int> Neighbourhood::partOf(std::span<const int> seeds) {
    return around(seeds, kEverything).unknowns;
}

}  // namespace holdfast::solver::detail
