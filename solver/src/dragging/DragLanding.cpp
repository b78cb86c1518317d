#include "solver/src/dragging/DragLanding.h"

#include <algorithm>
#include <cmath>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Rounds of a landing, each of which takes away all but a ten-thousandth or less of the handles' compliance.
constexpr int kMostRounds = 5;

/// Handles within this part of the sketch's size are where they should be: rounding of some hundred coordinates.
constexpr double kArrived = 1e-12;

}  // namespace

Attempt DragLanding::land() {
    Attempt attempt;
    attempt.isSolved = true;
    if (m_region.goals.empty() || m_region.seeds.empty())
        return attempt;
    const std::vector<double> found = m_region.subproblem->read();
    const double missBefore = m_region.miss();
    std::vector<double> wanted = seedGoals(m_region.goals);
    if (!m_region.isMet())
        wanted = nearestHandles(wanted, attempt.iterations);
    const std::vector<double> nearest = m_region.subproblem->read();
    if (!arrive(wanted, attempt.iterations))
        m_region.subproblem->write(nearest);
    if (m_region.miss() > missBefore + kArrived * m_region.workspace.system().size)
        m_region.subproblem->write(found);
    return attempt;
}

/// Where the handles' unknowns, which are the first of the subproblem, are asked to be: handles that constraints
/// have made one meet in the middle.
std::vector<double> DragLanding::seedGoals(std::span<const double> wanted) {
    const EquationSystem& system = m_region.workspace.system();
    std::vector<double> sums(m_region.seeds.size(), 0.0), counts(m_region.seeds.size(), 0.0);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const ValueLink& link = system.links[at(m_region.handles[i])];
        if (link.unknown < 0)
            continue;
        const auto seed =
            std::lower_bound(m_region.seeds.begin(), m_region.seeds.end(), link.unknown) - m_region.seeds.begin();
        sums[at(static_cast<int>(seed))] += link.sign * (wanted[i] - link.offset);
        counts[at(static_cast<int>(seed))] += 1.0;
    }
    for (std::size_t j = 0; j < sums.size(); ++j)
        sums[j] /= counts[j];
    return sums;
}

double DragLanding::farthestOfSeeds(std::span<const double> x, std::span<const double> wanted) const {
    double most = 0.0;
    for (std::size_t j = 0; j < wanted.size(); ++j)
        most = std::max(most, std::abs(x[j] - wanted[j]) * m_region.subproblem->metric()[j]);
    return most;
}

IterationLimits DragLanding::sharp() {
    IterationLimits limits = m_region.careful();
    limits.sharpens = true;
    return limits;
}

/// Only the handles pull, the rest follows them from where it is: so the compliance shrinks with every round.
/// Where they come nearest.
std::vector<double> DragLanding::nearestHandles(std::span<const double> wanted, int& iterations) {
    for (int round = 0; round < kMostRounds; ++round) {
        const std::vector<double> x = m_region.subproblem->read();
        Pull pull = m_region.workspace.pullOf(*m_region.subproblem);
        std::copy(x.begin(), x.end(), pull.targets.begin());
        std::copy(wanted.begin(), wanted.end(), pull.targets.begin());
        const Attempt attempt = m_region.workspace.trySettling(*m_region.subproblem, x, sharp(), pull);
        iterations += attempt.iterations;
        const std::vector<double> next = m_region.subproblem->read();
        if (!attempt.isSolved) {
            m_region.subproblem->write(x);
            break;
        }
        if (farthestOfSeeds(next, std::span(x).first(wanted.size())) <= m_region.workspace.system().aim)
            break;
    }
    std::vector<double> reached = m_region.subproblem->read();
    reached.resize(wanted.size());
    return reached;
}

/// The least movement with the handles at goals that they can reach: what they still yield is carried over to the
/// wishes, as a method of multipliers does.
bool DragLanding::arrive(std::span<const double> reachable, int& iterations) {
    Pull pull = m_region.workspace.pullOf(*m_region.subproblem);
    std::copy(reachable.begin(), reachable.end(), pull.targets.begin());
    std::fill_n(pull.weights.begin(), reachable.size(), DragRegion::kHandleEmphasis * DragRegion::kHandleEmphasis);
    for (std::size_t j = 0; j < reachable.size(); ++j)
        pull.weights[j] *= m_region.subproblem->metric()[j] * m_region.subproblem->metric()[j];
    const double same = kArrived * m_region.workspace.system().size;
    for (int round = 0; round < kMostRounds; ++round) {
        const Attempt attempt =
            m_region.workspace.trySettling(*m_region.subproblem, m_region.subproblem->read(), sharp(), pull);
        iterations += attempt.iterations;
        const std::vector<double> x = m_region.subproblem->read();
        if (!attempt.isSolved)
            return false;
        if (farthestOfSeeds(x, reachable) <= m_region.workspace.system().aim)
            break;
        for (std::size_t j = 0; j < reachable.size(); ++j)
            pull.targets[j] += reachable[j] - x[j];
    }
    return farthestOfSeeds(m_region.subproblem->read(), reachable) <= same && putHandlesOn(reachable);
}

/// To the last bit, as the equations hold there as well as anywhere near.
bool DragLanding::putHandlesOn(std::span<const double> reachable) {
    const std::vector<double> near = m_region.subproblem->read();
    std::vector<double> x = near, residual;
    std::copy(reachable.begin(), reachable.end(), x.begin());
    m_region.subproblem->evaluate(x, residual);
    if (largest(residual) > m_region.workspace.system().tolerance)
        m_region.subproblem->write(near);
    return true;
}

}  // namespace holdfast::solver::detail
