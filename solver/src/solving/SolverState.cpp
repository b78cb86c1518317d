#include "solver/src/solving/SolverState.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

constexpr int kFirstRings = 2;

/// What differs by less than this many tolerances is the same.
constexpr double kSame = 10.0;

}  // namespace

SolverState::SolverState(const SketchData& sketch, EquationSystem system)
    : m_sketch(sketch), m_system(std::move(system)), m_neighbourhood(m_system), m_start(m_system.values) {
    putConstants();
}

/// Values that constraints make constant take that value at once; what differs by rounding only stays.
void SolverState::putConstants() {
    for (std::size_t v = 0; v < m_system.values.size(); ++v) {
        const ValueLink& link = m_system.links[v];
        if (link.unknown >= 0 || std::abs(m_system.values[v] - link.offset) * m_system.metric[v] <= m_system.tolerance)
            continue;
        m_system.values[v] = link.offset;
        if (v < m_system.entityOfValue.size())
            m_displaced.push_back(m_system.entityOfValue[v]);
    }
}

void SolverState::wish(int value, double target, double emphasis) {
    m_wishes[value] = {target, emphasis};
}

bool SolverState::pin(int value, double goal) {
    const ValueLink& link = m_system.links[at(value)];
    const double tolerance = kSame * m_system.tolerance / m_system.metric[at(value)];
    if (link.unknown < 0)
        return std::abs(link.offset - goal) <= tolerance;
    const double x = link.sign * (goal - link.offset);
    const auto [entry, isNew] = m_pins.emplace(link.unknown, x);
    if (!isNew)
        return std::abs(entry->second - x) <= tolerance;
    m_system.assign(link.unknown, x);
    m_neighbourhood.block({&link.unknown, 1});
    m_touched.push_back(link.unknown);
    return true;
}

std::vector<int> SolverState::violated() const {
    std::vector<char> isSeed(at(m_system.unknownCount), 0);
    for (std::size_t v = 0; v < m_system.values.size(); ++v) {
        const ValueLink& link = m_system.links[v];
        if (link.unknown < 0 || m_pins.contains(link.unknown))
            continue;
        const double first = m_system.values[at(m_system.valuesOfUnknown[link.unknown].front())];
        const ValueLink& firstLink = m_system.links[at(m_system.valuesOfUnknown[link.unknown].front())];
        const double x = link.sign * (m_system.values[v] - link.offset);
        const double firstX = firstLink.sign * (first - firstLink.offset);
        if (!(std::abs(x - firstX) * m_system.metric[v] <= m_system.tolerance))
            isSeed[at(link.unknown)] = 1;
    }
    for (std::size_t e = 0; e < m_system.set.equations.size(); ++e) {
        if (m_system.residualOf(static_cast<int>(e)) <= m_system.tolerance)
            continue;
        for (const int v : m_system.set.inputsOf(m_system.set.equations[e])) {
            const int unknown = m_system.links[at(v)].unknown;
            if (unknown >= 0 && !m_pins.contains(unknown))
                isSeed[at(unknown)] = 1;
        }
    }
    std::vector<int> seeds;
    for (int u = 0; u < m_system.unknownCount; ++u) {
        if (isSeed[at(u)])
            seeds.push_back(u);
    }
    return seeds;
}

int SolverState::brokenConstantEquation() const {
    for (std::size_t e = 0; e < m_system.set.equations.size(); ++e) {
        const auto inputs = m_system.set.inputsOf(m_system.set.equations[e]);
        const bool isConstant = std::all_of(inputs.begin(), inputs.end(), [&](int v) {
            const int unknown = m_system.links[at(v)].unknown;
            return unknown < 0 || m_pins.contains(unknown);
        });
        if (isConstant && !(m_system.residualOf(static_cast<int>(e)) <= kSame * m_system.tolerance))
            return static_cast<int>(e);
    }
    return -1;
}

Pull SolverState::pullOf(const Subproblem& subproblem) const {
    Pull pull;
    for (const int u : subproblem.unknowns()) {
        double sum = 0.0, weight = 0.0;
        for (const int v : m_system.valuesOfUnknown[u]) {
            const auto wish = m_wishes.find(v);
            const double target = wish == m_wishes.end() ? m_start[at(v)] : wish->second.target;
            const double scale = m_system.metric[at(v)] * (wish == m_wishes.end() ? 1.0 : wish->second.emphasis);
            const ValueLink& link = m_system.links[at(v)];
            sum += scale * scale * link.sign * (target - link.offset);
            weight += scale * scale;
        }
        pull.targets.push_back(sum / weight);
        pull.weights.push_back(weight);
    }
    return pull;
}

std::optional<Degeneracy> SolverState::degeneracyIn(std::span<const int> entities, std::span<const int> senses,
                                                    double margin) const {
    if (auto degeneracy = findFlaw(m_sketch, m_system, entities, margin))
        return degeneracy;
    return findTurnedTangency(m_sketch, m_system, senses);
}

std::optional<Degeneracy> SolverState::degeneracyInConstants() const {
    std::vector<int> unknowns, equations;
    for (const auto& [unknown, goal] : m_pins) {
        unknowns.push_back(unknown);
        const auto reading = m_system.equationsOfUnknown[unknown];
        equations.insert(equations.end(), reading.begin(), reading.end());
    }
    if (auto degeneracy = findFlaw(m_sketch, m_system, entitiesOf(m_system, unknowns)))
        return degeneracy;
    if (auto degeneracy = findFlaw(m_sketch, m_system, m_displaced))
        return degeneracy;
    return findTurnedTangency(m_sketch, m_system, sensesOf(m_system, equations));
}

Attempt SolverState::trySettling(Subproblem& subproblem, std::vector<double> x, IterationLimits limits) {
    return trySettling(subproblem, std::move(x), std::move(limits), pullOf(subproblem));
}

Attempt SolverState::trySettling(Subproblem& subproblem, std::vector<double> x, IterationLimits limits,
                                 const Pull& pull) {
    limits.isSound = [&](double margin) {
        return !degeneracyIn(subproblem.entities(), subproblem.senses(), margin).has_value();
    };
    limits.budget = m_budget;
    const IterationReport report = settle(subproblem, pull, x, limits);
    Attempt attempt{report.isSatisfied, report.isNearest, report.iterations, report.residual, std::nullopt};
    if (attempt.isSolved)
        attempt.degeneracy = degeneracyIn(subproblem.entities(), subproblem.senses());
    attempt.isSolved = attempt.isSolved && !attempt.degeneracy.has_value();
    return attempt;
}

/// From where the elements were at the reference, with the constants of the edit moved there bit by bit: the branch
/// of the solution cannot be lost on the way.
Attempt SolverState::tryFromReference(Subproblem& subproblem) {
    Attempt attempt;
    for (const int steps : {1, 8, 64}) {
        std::vector<double> x;
        for (const int u : subproblem.unknowns())
            x.push_back(m_system.meanOf(u, m_system.reference));
        bool isSatisfied = true;
        IterationLimits limits;
        limits.stride = 0.05;
        limits.budget = m_budget;
        for (int step = 1; step <= steps && isSatisfied; ++step) {
            const double part = static_cast<double>(step) / steps;
            for (const auto& [unknown, goal] : m_pins)
                m_system.assign(unknown, (1.0 - part) * m_system.meanOf(unknown, m_system.reference) + part * goal);
            isSatisfied = restore(subproblem, pullOf(subproblem).weights, x, limits).isSatisfied;
        }
        for (const auto& [unknown, goal] : m_pins)
            m_system.assign(unknown, goal);
        if (isSatisfied)
            attempt = trySettling(subproblem, x, limits);
        if (attempt.isSolved)
            return attempt;
    }
    return attempt;
}

/// In short strides, then on the way from the reference.
Attempt SolverState::tryCarefully(Subproblem& subproblem, const std::vector<double>& x) {
    IterationLimits careful;
    careful.stride = 0.01;
    careful.restoring = 150;
    Attempt inStrides = trySettling(subproblem, x, careful);
    if (inStrides.isSolved)
        return inStrides;
    Attempt onTheWay = tryFromReference(subproblem);
    onTheWay.iterations += inStrides.iterations;
    return onTheWay;
}

Attempt SolverState::trySubproblem(Subproblem& subproblem, bool isWhole) {
    const std::vector<double> x = subproblem.read();
    Attempt attempt = trySettling(subproblem, x, {});
    if (attempt.isSolved || !isWhole || hasSpentBudget())
        return attempt;
    // What the first try left says best what stands in the way.
    const std::vector<double> left = m_system.values;
    Attempt careful = tryCarefully(subproblem, x);
    careful.iterations += attempt.iterations;
    if (careful.isSolved)
        return careful;
    m_system.values = left;
    attempt.iterations = careful.iterations;
    return attempt;
}

Attempt SolverState::solveAround(std::span<const int> seeds, Scope reach) {
    Attempt attempt;
    int iterations = 0;
    for (int steps = kFirstRings;; steps *= 2) {
        const Neighbourhood::Rings rings = reach == Scope::part
                                               ? Neighbourhood::Rings{m_neighbourhood.partOf(seeds), true}
                                               : m_neighbourhood.around(seeds, steps);
        Subproblem subproblem(m_system, rings.unknowns);
        std::vector<std::pair<int, double>> old;
        for (const int u : rings.unknowns) {
            for (const int v : m_system.valuesOfUnknown[u])
                old.emplace_back(v, m_system.values[at(v)]);
        }
        attempt = trySubproblem(subproblem, rings.isWhole);
        iterations += attempt.iterations;
        attempt.iterations = iterations;
        if (attempt.isSolved) {
            m_touched.insert(m_touched.end(), rings.unknowns.begin(), rings.unknowns.end());
            return attempt;
        }
        if (rings.isWhole || hasSpentBudget())
            return attempt;
        for (const auto& [v, x] : old)
            m_system.values[at(v)] = x;
    }
}

}  // namespace holdfast::solver::detail
