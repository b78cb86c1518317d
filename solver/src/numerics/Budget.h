#pragma once

#include <chrono>
#include <functional>
#include <limits>
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
        if (isOver())
            return false;
        if (m_left <= 0)
            m_overrun = Overrun::iterations;
        else if (countsIterations())
            --m_left;
        return m_overrun == Overrun::none;
    }

    /// Time is up, or the solve is cancelled: asked without an iteration to be made.
    bool isOver() {
        if (m_overrun != Overrun::none)
            return true;
        if (m_isCancelled && m_isCancelled())
            m_overrun = Overrun::cancelled;
        else if (m_deadline != Clock::time_point::max() && Clock::now() >= m_deadline)
            m_overrun = Overrun::time;
        return m_overrun != Overrun::none;
    }

    bool countsIterations() const { return m_left != std::numeric_limits<int>::max(); }
    Clock::time_point deadline() const { return m_deadline; }

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
