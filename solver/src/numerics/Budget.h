#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "solver/src/Uses.h"

namespace holdfast::solver::detail {

/// What a solve may cost. It is asked before every factorisation; once it has said no it keeps saying so.
class Budget {
public:
    using Clock = std::chrono::steady_clock;
    enum class Overrun { none, iterations, time, cancelled };

    Budget(int mostIterations, Clock::time_point deadline, std::function<bool()> isCancelled)
        : m_left(mostIterations), m_deadline(deadline), m_isCancelled(std::move(isCancelled)) {}

    /// True when one more iteration may be made, and counts it.
    bool spend() {
        if (m_overrun != Overrun::none)
            return false;
        if (m_isCancelled && m_isCancelled())
            m_overrun = Overrun::cancelled;
        else if (m_deadline != Clock::time_point::max() && Clock::now() >= m_deadline)
            m_overrun = Overrun::time;
        else if (m_left <= 0)
            m_overrun = Overrun::iterations;
        else
            --m_left;
        return m_overrun == Overrun::none;
    }

    Overrun overrun() const { return m_overrun; }

private:
    int m_left;
    Clock::time_point m_deadline;
    std::function<bool()> m_isCancelled;
    Overrun m_overrun = Overrun::none;
};

inline bool maySpend(Budget* budget) {
    return budget == nullptr || budget->spend();
}
inline bool isSpent(const Budget* budget) {
    return budget != nullptr && budget->overrun() != Budget::Overrun::none;
}

}  // namespace holdfast::solver::detail
