#include "solver/src/solving/SolverState.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "solver/src/sketch/Connections.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

constexpr int kFirstRings = 2;  // an entity and what it touches

/// Iterations of a quick try. Those that arrive take 3 to 10; the way is followed where they do not.
constexpr int kQuick = 25;

/// Parts of the way from the reference: one, then this many times more, up to the most.
constexpr int kMoreParts = 8, kMostParts = 64;

/// What that way may cost, in unknowns and rows, once for every iteration: some tenths of a second; and iterations that
/// it may take at least, however large the part is.
constexpr long kMostFromReference = 400'000, kLeastIterations = 200;

/// Strides of second tries, as parts of the sketch's size, and their iterations: short, so that none leads over to
/// another branch, and as many as the size takes.
constexpr double kReferenceStride = 0.05, kCarefulStride = 0.01;
constexpr int kCarefulIterations = 150;

/// Sizes that change by less than this part of the movement are as good as kept.
constexpr double kUnstrained = 0.01;

/// Wider rings are worth it when they take this part of the change of sizes away.
constexpr double kRelief = 0.02;

long widthOf(const Subproblem& subproblem) {
    return subproblem.columnCount() + subproblem.rowCount();
}

/// Where rings that are most of a part have failed, the next ones are all of it: they would be as dear and hardly
/// differ.
bool isMostOf(std::size_t rings, std::size_t part) {
    return 2 * rings >= part;
}

}  // namespace

SolverState::SolverState(const SketchData& sketch, EquationSystem system)
    : m_sketch(sketch), m_system(std::move(system)), m_neighbourhood(m_system), m_start(m_system.values) {
    putConstants();
}

SolverState::SolverState(const SketchData& sketch, EquationSystem system, std::span<const int> about)
    : m_sketch(sketch), m_system(std::move(system)), m_neighbourhood(m_system), m_start(m_system.values) {
    limitTo(about);
    putConstants();
}

void SolverState::limitTo(std::span<const int> about) {
    m_isConcerned.assign(m_sketch.entities.size(), 0);
    m_isConcernedUnknown.assign(at(m_system.unknownCount), 0);
    std::vector<int> next(about.begin(), about.end());
    while (!next.empty()) {
        takeConcerned(next);
        next = tiedToDisplaced();
    }
}

/// Entities, and what is connected with them over unknowns.
void SolverState::takeConcerned(std::span<const int> entities) {
    std::vector<int> seeds;
    for (const int number : entities) {
        m_isConcerned[at(number)] = 1;
        const SketchEntity& entity = m_sketch.entities[at(number)];
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            if (const int unknown = m_system.links[at(v)].unknown; unknown >= 0)
                seeds.push_back(unknown);
    }
    const std::vector<int> part = m_neighbourhood.partOf(seeds);
    for (const int u : part)
        m_isConcernedUnknown[at(u)] = 1;
    for (const int number : entitiesOf(m_system, part))
        m_isConcerned[at(number)] = 1;
}

/// Entities that are not concerned yet and that constraints tie to one that constants place or shape anew, over others
/// that they do: what hangs on constants has no unknown in common. A later try begins where an earlier one has led, and
/// the reference tells what that has moved. Linear in the sketch.
std::vector<int> SolverState::tiedToDisplaced() const {
    std::vector<char> isDisplaced(m_sketch.entities.size(), 0), isTaken(m_isConcerned);
    for (std::size_t v = 0; v < m_system.entityOfValue.size(); ++v) {
        if (isConstantAwayFrom(m_system.values, v) || isConstantAwayFrom(m_system.reference, v))
            isDisplaced[at(m_system.entityOfValue[v])] = 1;
        for (const std::vector<double>* values : {&m_system.values, &m_system.reference})
            if (const int other = apartFrom(*values, v); other >= 0) {
                isDisplaced[at(m_system.entityOfValue[v])] = 1;
                if (at(other) < m_system.entityOfValue.size())
                    isDisplaced[at(m_system.entityOfValue[at(other)])] = 1;
            }
    }
    std::vector<int> displaced, tied;
    for (int i = 0; i < static_cast<int>(isDisplaced.size()); ++i)
        if (isDisplaced[at(i)] && concerns(i))
            displaced.push_back(i);
    if (displaced.empty())
        return tied;
    const ListTable constraintsOf = constraintsByEntity(m_sketch, bindingConstraints(m_sketch));
    std::vector<char> isSeen(m_sketch.constraints.size(), 0);
    for (std::size_t head = 0; head < displaced.size(); ++head)
        for (const int c : constraintsOf[displaced[head]]) {
            if (std::exchange(isSeen[at(c)], 1))
                continue;
            for (const SketchPlace& place : m_sketch.constraints[at(c)].refs) {
                if (m_sketch.entities[at(place.entity)].fixed || std::exchange(isTaken[at(place.entity)], 1))
                    continue;
                tied.push_back(place.entity);
                if (isDisplaced[at(place.entity)])
                    displaced.push_back(place.entity);
            }
        }
    return tied;
}

bool SolverState::isConstantAwayFrom(std::span<const double> values, std::size_t v) const {
    const ValueLink& link = m_system.links[v];
    return link.unknown < 0 && !(std::abs(values[v] - link.offset) * m_system.metric[v] <= m_system.tolerance);
}

int SolverState::apartFrom(std::span<const double> values, std::size_t v) const {
    const ValueLink& link = m_system.links[v];
    if (link.unknown < 0)
        return -1;
    const int first = m_system.valuesOfUnknown[link.unknown].front();
    const ValueLink& firstLink = m_system.links[at(first)];
    const double gap = link.sign * (values[v] - link.offset) - firstLink.sign * (values[at(first)] - firstLink.offset);
    return std::abs(gap) * m_system.metric[v] <= m_system.tolerance ? -1 : first;
}

void SolverState::aimAt(std::span<const double> values) {
    std::copy(values.begin(), values.begin() + m_system.figureValueCount, m_start.begin());
}

void SolverState::askOf(int entity, Asked what) {
    m_asked.resize(m_sketch.entities.size(), Asked::nothing);
    m_asked[at(entity)] = std::max(m_asked[at(entity)], what);
}

bool SolverState::concernsConstraint(int constraint) const {
    if (m_isConcerned.empty())
        return true;
    const auto& refs = m_sketch.constraints[at(constraint)].refs;
    return std::any_of(refs.begin(), refs.end(), [&](const SketchPlace& place) { return concerns(place.entity); });
}

bool SolverState::concernsEquation(int number) const {
    const Equation& equation = m_system.set.equations[at(number)];
    if (equation.constraint >= 0)
        return concernsConstraint(equation.constraint);
    return equation.entity < 0 || concerns(equation.entity);
}

bool SolverState::hasBrokenOutside() const {
    if (m_isConcerned.empty())
        return false;
    if (std::any_of(m_system.contradictions.begin(), m_system.contradictions.end(),
                    [&](const Contradiction& c) { return c.constraint >= 0 && !concernsConstraint(c.constraint); }))
        return true;
    const double limit = SketchData::kHolds * m_system.tolerance;
    for (std::size_t v = 0; v < at(m_system.figureValueCount); ++v) {
        if (concerns(m_system.entityOfValue[v]))
            continue;
        const ValueLink& link = m_system.links[v];
        const double value = link.unknown < 0 ? link.offset : link.sign * m_system.meanOf(link.unknown) + link.offset;
        if (!(std::abs(m_system.values[v] - value) * m_system.metric[v] <= limit))
            return true;
    }
    for (int e = 0; e < static_cast<int>(m_system.set.equations.size()); ++e)
        if (!concernsEquation(e) && !(m_system.residualOf(e) <= limit))
            return true;
    return false;
}

double SolverState::changeOf(const SizeRow& size) const {
    const Equation& equation = m_system.set.equations[at(size.equation)];
    return equation.slack >= 0 ? std::abs(m_system.values[at(equation.slack)]) : 0.0;
}

void SolverState::takeSizes() {
    for (const SizeRow& size : m_system.sizes) {
        const Equation& equation = m_system.set.equations[at(size.equation)];
        if (equation.slack < 0)
            continue;
        double& slack = m_system.values[at(equation.slack)];
        slack += residuals(m_system.set, equation, m_system.values)[0];
    }
}

/// Values that constraints make constant take that value at once; what differs by rounding only stays. A try that
/// begins where an earlier one has led may find everything in its place, and no subproblem looks at it: only the
/// reference tells what has moved.
void SolverState::putConstants() {
    for (std::size_t v = 0; v < m_system.values.size(); ++v) {
        const bool isOfEntity = v < m_system.entityOfValue.size();
        const bool isAway = isConstantAwayFrom(m_system.values, v);
        if (!isAway && !(isOfEntity && hasMoved(v)))
            continue;
        if (isOfEntity) {
            const int entity = m_system.entityOfValue[v];
            if (!concerns(entity))
                continue;
            if (m_displaced.empty() || m_displaced.back() != entity)
                m_displaced.push_back(entity);
        }
        if (isAway)
            m_system.values[v] = m_system.links[v].offset;
    }
}

bool SolverState::hasMoved(std::size_t v) const {
    return !(std::abs(m_system.values[v] - m_system.reference[v]) * m_system.metric[v] <= m_system.tolerance);
}

void SolverState::wish(int value, double target, double emphasis) {
    m_wishes[value] = {target, emphasis};
    const int number = m_system.entityOfValue[at(value)];
    askOf(number, m_sketch.entities[at(number)].kind == EntityKind::arc ? Asked::radius : Asked::sizes);
}

bool SolverState::pin(int value, double goal) {
    const int number = m_system.entityOfValue[at(value)];
    const SketchEntity& entity = m_sketch.entities[at(number)];
    const bool isEnd = entity.kind == EntityKind::arc && value > entity.firstValue + 2;
    askOf(number, entity.kind == EntityKind::arc && !isEnd ? Asked::radius : Asked::sizes);
    const ValueLink& link = m_system.links[at(value)];
    const double tolerance = SketchData::kHolds * m_system.tolerance / m_system.metric[at(value)];
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
        if (link.unknown < 0 || !concernsUnknown(link.unknown) || m_pins.contains(link.unknown))
            continue;
        if (apartFrom(m_system.values, v) >= 0)
            isSeed[at(link.unknown)] = 1;
    }
    for (std::size_t e = 0; e < m_system.set.equations.size(); ++e) {
        if (m_system.residualOf(static_cast<int>(e)) <= m_system.tolerance)
            continue;
        for (const int v : m_system.set.inputsOf(m_system.set.equations[e])) {
            const int unknown = m_system.links[at(v)].unknown;
            if (unknown >= 0 && concernsUnknown(unknown) && !m_pins.contains(unknown))
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
        if (isConstant && concernsEquation(static_cast<int>(e)) &&
            !(m_system.residualOf(static_cast<int>(e)) <= SketchData::kHolds * m_system.tolerance))
            return static_cast<int>(e);
    }
    return -1;
}

Pull SolverState::pullOf(const Subproblem& subproblem) const {
    Pull pull;
    pull.targets.resize(subproblem.unknowns().size());
    pull.weights.resize(subproblem.unknowns().size());
    updatePull(subproblem, pull.targets.size(), pull);
    return pull;
}

void SolverState::updatePull(const Subproblem& subproblem, std::size_t first, Pull& pull) const {
    for (std::size_t j = 0; j < first; ++j)
        std::tie(pull.targets[j], pull.weights[j]) = pullOf(subproblem.unknowns()[j]);
}

std::pair<double, double> SolverState::pullOf(int unknown) const {
    double sum = 0.0, weight = 0.0;
    for (const int v : m_system.valuesOfUnknown[unknown]) {
        const auto wish = m_wishes.find(v);
        const double target = wish == m_wishes.end() ? m_start[at(v)] : wish->second.target;
        const double scale = m_system.metric[at(v)] * (wish == m_wishes.end() ? 1.0 : wish->second.emphasis);
        const ValueLink& link = m_system.links[at(v)];
        sum += scale * scale * link.sign * (target - link.offset);
        weight += scale * scale;
    }
    return {sum / weight, weight};
}

std::optional<Degeneracy> SolverState::degeneracyIn(std::span<const int> entities, std::span<const int> senses,
                                                    double margin) const {
    if (auto degeneracy = findFlaw(m_sketch, m_system, entities, margin, m_passed))
        return degeneracy;
    if (auto degeneracy = findRuined(m_sketch, m_system, entities, m_asked, margin * m_least))
        return degeneracy;
    return findTurnedTangency(m_sketch, m_system, senses);
}

std::optional<Degeneracy> SolverState::degeneracyInConstants() const {
    std::vector<int> unknowns, senses;
    for (const auto& [unknown, goal] : m_pins)
        unknowns.push_back(unknown);
    if (auto degeneracy = findFlaw(m_sketch, m_system, entitiesOf(m_system, unknowns), 1.0, m_passed))
        return degeneracy;
    if (auto degeneracy = findFlaw(m_sketch, m_system, m_displaced, 1.0, m_passed))
        return degeneracy;
    // A tangency may turn over by constants and go on holding, so that nothing else moves.
    for (int i = 0; i < static_cast<int>(m_system.senses.size()); ++i)
        if (concernsEquation(m_system.senses[at(i)].equation))
            senses.push_back(i);
    return findTurnedTangency(m_sketch, m_system, senses);
}

std::optional<Degeneracy> SolverState::ruinInConstants() const {
    if (auto degeneracy = findRuined(m_sketch, m_system, m_displaced, m_asked, m_least))
        return degeneracy;
    return findRuined(m_sketch, m_system, hangingOnPins(), m_asked, m_least);
}

/// Entities that the edit does not name, but of which it makes a value constant: with nothing else about them left to
/// solve for, no subproblem has looked at them.
std::vector<int> SolverState::hangingOnPins() const {
    std::vector<int> pinned;
    for (const auto& [unknown, goal] : m_pins)
        pinned.push_back(unknown);
    std::vector<int> hanging = entitiesOf(m_system, pinned);
    std::erase_if(hanging,
                  [&](int number) { return at(number) < m_asked.size() && m_asked[at(number)] == Asked::sizes; });
    return hanging;
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
    const long before = subproblem.factorWork();
    const IterationReport report = settle(subproblem, pull, x, limits);
    count(subproblem, report, before);
    Attempt attempt{report.isSatisfied, report.isNearest, report.isBarred, report.iterations, report.residual, {}};
    if (attempt.isSolved && !report.isSound)
        attempt.degeneracy = degeneracyIn(subproblem.entities(), subproblem.senses());
    attempt.isSolved = attempt.isSolved && !attempt.degeneracy.has_value();
    return attempt;
}

void SolverState::count(const Subproblem& subproblem, const IterationReport& report, long factorWorkBefore) {
    m_work += report.iterations * subproblem.workOfIteration();
    m_factorWork += subproblem.factorWork() - factorWorkBefore;
}

/// From where the entities were at the reference, with the constants of the edit moved there bit by bit: the branch
/// of the solution cannot be lost on the way.
Attempt SolverState::tryFromReference(Subproblem& subproblem) {
    Attempt attempt;
    const long most = m_work + std::max(kMostFromReference, kLeastIterations * widthOf(subproblem));
    for (int steps = 1; steps <= kMostParts && m_work < most; steps *= kMoreParts) {
        std::vector<double> x;
        for (const int u : subproblem.unknowns())
            x.push_back(m_system.meanOf(u, m_system.reference));
        bool isSatisfied = true;
        IterationLimits limits;
        limits.stride = kReferenceStride;
        limits.budget = m_budget;
        for (int step = 1; step <= steps && isSatisfied && m_work < most; ++step) {
            const double part = static_cast<double>(step) / steps;
            for (const auto& [unknown, goal] : m_pins)
                m_system.assign(unknown, (1.0 - part) * m_system.meanOf(unknown, m_system.reference) + part * goal);
            const long before = subproblem.factorWork();
            const IterationReport report = restore(subproblem, pullOf(subproblem).weights, x, limits);
            count(subproblem, report, before);
            isSatisfied = report.isSatisfied;
        }
        for (const auto& [unknown, goal] : m_pins)
            m_system.assign(unknown, goal);
        if (isSatisfied && m_work < most)
            attempt = trySettling(subproblem, x, limits);
        if (attempt.isSolved)
            return attempt;
    }
    return attempt;
}

/// In short strides, then on the way from the reference.
Attempt SolverState::tryCarefully(Subproblem& subproblem, const std::vector<double>& x) {
    IterationLimits careful;
    careful.stride = kCarefulStride;
    careful.restoring = kCarefulIterations;
    Attempt inStrides = trySettling(subproblem, x, careful);
    if (inStrides.isSolved)
        return inStrides;
    Attempt onTheWay = tryFromReference(subproblem);
    onTheWay.iterations += inStrides.iterations;
    return onTheWay;
}

Attempt SolverState::trySubproblem(Subproblem& subproblem, bool isWhole) {
    const std::vector<double> x = subproblem.read();
    IterationLimits limits;
    if (m_isQuick)
        limits.restoring = kQuick;
    if (!m_isNearest)
        limits.sliding = 0;
    Attempt attempt = trySettling(subproblem, x, limits);
    if (attempt.isSolved || !isWhole || m_isQuick || hasSpentBudget())
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

/// The largest change of a size that is kept, where it is more than a small part of the movement.
double SolverState::strainOf(const Subproblem& subproblem) const {
    double strain = 0.0, way = 0.0;
    for (const int e : subproblem.equations())
        if (const int slack = m_system.set.equations[at(e)].slack; slack >= 0)
            strain = std::max(strain, std::abs(m_system.values[at(slack)]));
    for (const int number : subproblem.entities()) {
        const SketchEntity& entity = m_sketch.entities[at(number)];
        for (std::size_t v = at(entity.firstValue); v < at(entity.firstValue + entity.valueCount); ++v)
            way = std::max(way, std::abs(m_system.values[v] - m_start[v]) * m_system.metric[v]);
    }
    return strain <= kUnstrained * way ? 0.0 : strain;
}

Attempt SolverState::solveAround(std::span<const int> seeds, Scope reach) {
    Attempt attempt;
    int iterations = 0;
    double lastStrain = -1.0;
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
        const double strain = attempt.isSolved && !m_system.sizes.empty() ? strainOf(subproblem) : 0.0;
        const bool isRelieved = strain == 0.0 || (lastStrain > 0.0 && strain > (1.0 - kRelief) * lastStrain);
        if (attempt.isSolved && (isRelieved || rings.isWhole || hasSpentBudget())) {
            m_touched.insert(m_touched.end(), rings.unknowns.begin(), rings.unknowns.end());
            return attempt;
        }
        if (rings.isWhole || hasSpentBudget())
            return attempt;
        if (!attempt.isSolved && isMostOf(rings.unknowns.size(), m_neighbourhood.partOf(seeds).size()))
            reach = Scope::part;
        lastStrain = attempt.isSolved ? strain : -1.0;
        for (const auto& [v, x] : old)
            m_system.values[at(v)] = x;
    }
}

}  // namespace holdfast::solver::detail
