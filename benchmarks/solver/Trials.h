#pragma once

#include <string>

#include "benchmarks/solver/Workloads.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// Times in ms of one solver on one sketch, and how well the answers hold.
struct Times {
    double solve = -1.0;      ///< from a disturbed start, everything built anew
    double firstStep = -1.0;  ///< of a drag, everything built anew
    double laterStep = -1.0;  ///< median of the steps that follow
    double residual = 0.0;    ///< worst, as a part of the sketch's size
    std::string trouble;      ///< empty: every solve came to an end
};

/// How long to measure one thing, in ms.
struct Effort {
    double solves = 1000.0;
    double steps = 4000.0;  ///< of a drag
};

Times timeOwn(const Workload& work, Scope reach, const Effort& effort);
Times timeOther(const Workload& work, const Effort& effort);

/// Median times of a later drag step of the sketch alone and beside others that are not connected with it, taken in
/// turns so that both see the same machine.
std::pair<double, double> timeBesideOthers(const Workload& work, int others);

}  // namespace holdfast::solver::detail
