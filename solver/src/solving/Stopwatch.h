#pragma once

#include <chrono>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Budget.h"

namespace holdfast::solver::detail {

class Stopwatch {
public:
    double seconds() const { return std::chrono::duration<double>(Budget::Clock::now() - m_start).count(); }

private:
    Budget::Clock::time_point m_start = Budget::Clock::now();
};

}  // namespace holdfast::solver::detail
