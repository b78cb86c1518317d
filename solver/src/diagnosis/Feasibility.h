#pragma once

#include "solver/src/Uses.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// What a search may cost. It is counted in unknowns and rows that were gone through and not in time, so that the same
/// sketch gets the same answer on every machine.
class Effort {
public:
    explicit Effort(Budget* budget, long most = kMost) : m_left(most), m_budget(budget) {}

    void spend(std::size_t work) { m_left -= static_cast<long>(work); }
    bool isSpent() const { return m_left <= 0 || detail::isSpent(m_budget); }
    Budget* budget() const { return m_budget; }

    /// Unknowns and rows, each once for every iteration: about a second, at some 0.4 us for each.
    static constexpr long kMost = 2'500'000;
    /// For an edit that is refused: some tenths of a second beside what the edit itself has cost.
    static constexpr long kMostForEdit = 1'000'000;

private:
    long m_left;
    Budget* m_budget;
};

/// How many different places a trial begins from before it says no.
enum class Care {
    quick,    ///< to narrow down
    thorough  ///< for an answer that is told
};

/// Can these constraints and targets hold together, with no entity collapsed or turned over? A yes is certain, as a
/// solution has been found. A no means that none was found from several places. The sketch is only read; the effort
/// pays for the entities concerned.
bool canHold(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets, Care care,
             Effort& effort);

/// Constraints that look guilty, in groups, the likeliest first.
struct Suspects {
    std::vector<std::vector<int>> circuits{};  ///< sets that contradict themselves to first order, with none too many
    std::vector<std::vector<int>> groups{};    ///< larger ones; none when all can hold together
};

/// Where the sum of the squared residuals is least, J^T F = 0: the rows with a residual depend on each other and
/// contradict each other at once, to first order. The constraints that they belong to are the suspects.
Suspects suspectsAmong(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                       Effort& effort);

}  // namespace holdfast::solver::detail
