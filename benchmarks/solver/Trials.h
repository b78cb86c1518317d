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
    double miss = 0.0;        ///< the same as a length
    std::string trouble;      ///< empty: every solve came to an end
};

/// How long to measure one thing, in ms.
struct TimeToMeasure {
    double solves = 1000.0;
    double steps = 4000.0;  ///< of a drag
};

Times timeOwn(const Workload& work, Scope reach, const TimeToMeasure& effort);
Times timeOther(const Workload& work, const TimeToMeasure& effort);

/// One step of a drag of the whole part that is far longer than an element.
struct Jump {
    double milliseconds = 0.0;  ///< the worst of eight directions, least of two runs each
    int unsolved = 0;           ///< directions
};
Jump timeJump(const Workload& work, double way);

/// True when the sketch is solved, all coordinates shaken by up to so much.
bool solvesShaken(const Workload& work, double amount);

/// Median times of a later drag step of the sketch alone and beside others that are not connected with it, taken in
/// turns so that both see the same machine.
std::pair<double, double> timeBesideOthers(const Workload& work, int others);

}  // namespace holdfast::solver::detail
