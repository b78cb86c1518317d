#include "solver/src/diagnosis/Feasibility.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/diagnosis/RowCircuits.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"
#include "solver/src/solving/SolverState.h"

namespace holdfast::solver::detail {

namespace {

/// What an iteration costs beside its unknowns and rows, in the same measure: calls, allocations.
constexpr std::size_t kOverhead = 30;

/// Places that a trial begins from. One in three collapses by chance, which is too many to be told and not too many to
/// be narrowed down by.
constexpr int kQuickPlaces = 3, kThoroughPlaces = 8;

int placesOf(Care care) {
    return care == Care::quick ? kQuickPlaces : kThoroughPlaces;
}

/// How far a trial's later beginnings are from where the entities are, as a part of the sketch's size: far enough to
/// leave a collapsed or flattened place, near enough not to look at another drawing.
constexpr double kFirstShake = 0.02, kLastShake = 0.5;

/// A target may be many sizes of the few entities at hand away: strides of their size reach it, where those of a solve
/// would run out. Another branch is no loss, as only whether there is a solution is asked.
constexpr double kLongStride = 1.0;
constexpr int kMostIterations = 100;

/// Parts of the largest residual from which a constraint is suspected, first and then: near the least sum the others'
/// residuals are small, though not nothing.
constexpr double kGuilty = 1e-2, kPerhapsGuilty = 1e-5;

std::size_t costOf(const Subproblem& subproblem, int iterations) {
    const auto width = at(subproblem.columnCount()) + at(subproblem.rowCount());
    return (at(iterations) + 1) * (kOverhead + width);
}

/// Constraints and the entities that they are about, which are to be brought to hold.
class Trial {
public:
    Trial(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets, Effort& effort)
        : m_extract(sketch, constraints, targets),
          m_state(m_extract.sketch(), systemOf(m_extract.sketch())),
          m_effort(effort) {
        effort.spend(kOverhead + m_state.system().values.size() + m_state.system().set.inputs.size());
    }

    bool holds(Care care) {
        if (!meetsConstants())
            return false;
        // Each round solves the part of one seed, so there are at most as many as unknowns.
        for (int round = 0; round <= m_state.system().unknownCount; ++round) {
            const std::vector<int> seeds = m_state.violated();
            if (seeds.empty())
                return isSoundInConstants(placesOf(care));
            if (!solvePart(seeds.front(), placesOf(care)))
                return false;
        }
        return false;
    }

private:
    /// What is said to be impossible has to be so whichever way the curves run that are not tangent yet.
    static EquationSystem systemOf(const SketchData& sketch) {
        EquationSystem system = buildSystem(sketch);
        system.dropDoubtfulSenses();
        return system;
    }

    bool meetsConstants() {
        if (!m_state.system().contradictions.empty())
            return false;
        for (const Target& target : m_extract.targets()) {
            if (!m_state.pin(target.value, target.goal))
                return false;
        }
        return m_state.brokenConstantEquation() < 0;
    }

    bool solvePart(int seed, int starts) {
        const std::vector<int> part = m_state.neighbourhood().partOf({&seed, 1});
        if (solve(part, 0.0))
            return true;
        // What has collapsed needs its other values too, which no equation may join with those of the part.
        return solveShaken(entitiesAround(part), starts);
    }

    bool solveShaken(const std::vector<int>& unknowns, int starts) {
        for (int i = 1; i < starts && !unknowns.empty() && !m_effort.isSpent(); ++i) {
            const double way = static_cast<double>(i - 1) / std::max(starts - 2, 1);
            if (solve(unknowns, kFirstShake * std::pow(kLastShake / kFirstShake, way)))
                return true;
        }
        return false;
    }

    /// An entity that constants have collapsed may open again by its other values.
    bool isSoundInConstants(int starts) {
        const auto flaw = m_state.degeneracyInConstants();
        if (!flaw)
            return true;
        if (flaw->entity < 0)
            return false;
        std::vector<int> seeds;
        addUnknownsOf(flaw->entity, seeds);
        return solveShaken(m_state.neighbourhood().partOf(seeds), starts) && !m_state.degeneracyInConstants() &&
               m_state.violated().empty();
    }

    std::vector<int> entitiesAround(std::span<const int> part) {
        std::vector<int> seeds(part.begin(), part.end());
        for (const int number : entitiesOf(m_state.system(), part))
            addUnknownsOf(number, seeds);
        return m_state.neighbourhood().partOf(seeds);
    }

    void addUnknownsOf(int number, std::vector<int>& unknowns) const {
        const SketchEntity& entity = m_extract.sketch().entities[at(number)];
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v) {
            if (m_state.system().links[at(v)].unknown >= 0)
                unknowns.push_back(m_state.system().links[at(v)].unknown);
        }
    }

    /// From where the entities are, shaken by a part of the sketch's size.
    bool solve(const std::vector<int>& unknowns, double shake) {
        Subproblem subproblem(m_state.system(), unknowns);
        const std::vector<double> before = subproblem.read();
        std::vector<double> x = before;
        for (std::size_t j = 0; j < x.size() && shake > 0.0; ++j)
            x[j] += shake * m_state.system().size * uniform() / subproblem.metric()[j];
        IterationLimits limits;
        limits.restoring = kMostIterations;
        limits.stride = shake > 0.0 ? kLongStride : limits.stride;
        limits.budget = m_effort.budget();
        const IterationReport report = restore(subproblem, m_state.pullOf(subproblem).weights, x, limits);
        m_effort.spend(costOf(subproblem, report.iterations));
        subproblem.write(x);
        if (report.isSatisfied && isSound(subproblem))
            return true;
        subproblem.write(before);
        return false;
    }

    bool isSound(const Subproblem& subproblem) const {
        const SketchData& sketch = m_extract.sketch();
        return !findFlaw(sketch, m_state.system(), subproblem.entities()) &&
               !findTurnedTangency(sketch, m_state.system(), subproblem.senses());
    }

    /// Between -1 and 1, by the bits of the generator: distributions differ between standard libraries.
    double uniform() { return 2.0 * static_cast<double>(m_random()) / static_cast<double>(std::mt19937::max()) - 1.0; }

    Extract m_extract;
    SolverState m_state;
    Effort& m_effort;
    std::mt19937 m_random{1};
};

/// By all ways that a solve knows: the one that leads to a solution may be too narrow to be met with by chance. Shapes
/// are kept, as least movement draws a short line together where it could shift.
bool canBeSolved(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                 Effort& effort) {
    Extract extract(sketch, constraints, targets);
    const SolveResult result = solve(extract.sketch(), {.targets = extract.targets(),
                                                        .reach = Scope::part,
                                                        .keepsShapes = true,
                                                        .mayDivide = false,
                                                        .namesConflicts = false,
                                                        .budget = effort.budget()});
    effort.spend(static_cast<std::size_t>(result.work));
    // What the targets are not connected with has not been solved.
    const std::vector<double> misses = violationsOf(extract.sketch());
    const double most = extract.sketch().slack();
    return result.isSolved() && std::all_of(misses.begin(), misses.end(), [&](double miss) { return miss <= most; });
}

/// The constraints as equations, nothing merged, brought as near to holding as they come.
class LeastSquares {
public:
    LeastSquares(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                 Effort& effort)
        : m_constraints(constraints),
          m_extract(sketch, constraints, targets),
          m_state(m_extract.sketch(), plainSystem(m_extract.sketch())),
          m_effort(effort) {
        pinConstants();
        effort.spend(kOverhead + m_state.system().values.size() + m_state.system().set.inputs.size());
    }

    Suspects suspects() {
        std::vector<std::vector<int>> all = groups();
        return {std::move(m_circuits), std::move(all)};
    }

private:
    std::vector<std::vector<int>> groups() {
        const std::vector<int> seeds = m_state.violated();
        std::vector<char> isSeed(at(m_state.system().unknownCount), 0);
        for (const int seed : seeds)
            isSeed[at(seed)] = 1;
        for (const int seed : seeds) {
            if (!isSeed[at(seed)])
                continue;
            const std::vector<int> part = m_state.neighbourhood().partOf({&seed, 1});
            for (const int u : part)
                isSeed[at(u)] = 0;
            settlePart(part);
        }
        return byResidual();
    }

    static EquationSystem plainSystem(const SketchData& sketch) {
        return buildPlainSystem(sketch, bindingConstraints(sketch));
    }

    /// Nothing is merged, so constants of fixed entities and targets are held here.
    void pinConstants() {
        for (const SketchEntity& entity : m_extract.sketch().entities) {
            for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount && entity.fixed; ++v)
                m_state.pin(v, m_extract.sketch().values[at(v)]);
        }
        for (const Target& target : m_extract.targets())
            m_isMet = m_state.pin(target.value, target.goal) && m_isMet;
    }

    void settlePart(const std::vector<int>& part) {
        Subproblem subproblem(m_state.system(), part);
        std::vector<double> x = subproblem.read();
        IterationLimits limits;
        limits.budget = m_effort.budget();
        limits.givesUp = false;
        const IterationReport report = restore(subproblem, m_state.pullOf(subproblem).weights, x, limits);
        m_effort.spend(costOf(subproblem, report.iterations));
        subproblem.write(x);
        findCircuits(subproblem, x);
        if (auto flaw = findFlaw(m_extract.sketch(), m_state.system(), subproblem.entities()))
            m_flawed.push_back(flaw->entity);
        if (auto flaw = findTurnedTangency(m_extract.sketch(), m_state.system(), subproblem.senses()))
            m_turned.push_back(flaw->constraint);
    }

    /// Rows that depend on each other and contradict each other there, no row more than it takes.
    void findCircuits(Subproblem& subproblem, std::span<const double> x) {
        std::vector<double> residual;
        subproblem.linearise(x, residual);
        if (largest(residual) <= m_state.system().tolerance)
            return;
        const RowCircuits circuits(subproblem, residual, m_state.system().tolerance);
        m_effort.spend(circuits.cost());
        for (const std::vector<int>& equations : circuits.found()) {
            std::vector<int> group;
            for (const int e : equations)
                if (const int c = m_state.system().set.equations[at(e)].constraint; c >= 0)
                    group.push_back(m_constraints[at(c)]);
            std::sort(group.begin(), group.end());
            group.erase(std::unique(group.begin(), group.end()), group.end());
            if (std::find(m_circuits.begin(), m_circuits.end(), group) == m_circuits.end())
                m_circuits.push_back(std::move(group));
        }
    }

    std::vector<std::vector<int>> byResidual() {
        const EquationSystem& system = m_state.system();
        std::vector<double> misses(m_constraints.size(), 0.0);
        for (const auto& [c, e] : system.constraintEquations) {
            const double miss = system.residualOf(e);
            misses[at(c)] = miss <= misses[at(c)] ? misses[at(c)] : miss;
        }
        const double most = misses.empty() ? 0.0 : *std::max_element(misses.begin(), misses.end());
        std::vector<std::vector<int>> groups;
        if (const std::vector<int> flawed = onFlaws(); !flawed.empty())
            groups.push_back(flawed);
        for (const double share : {kGuilty, kPerhapsGuilty}) {
            std::vector<int> group;
            for (std::size_t i = 0; i < misses.size() && !(most <= system.tolerance); ++i) {
                if (!(misses[i] < share * most))
                    group.push_back(m_constraints[i]);
            }
            if (!group.empty())
                groups.push_back(std::move(group));
        }
        if (groups.empty() && !m_isMet)
            groups.emplace_back();
        return groups;
    }

    /// Constraints of entities that have collapsed or turned over.
    std::vector<int> onFlaws() const {
        std::vector<int> found;
        for (std::size_t i = 0; i < m_constraints.size(); ++i) {
            const auto& refs = m_extract.sketch().constraints[i].refs;
            const bool isOnFlawed = std::any_of(refs.begin(), refs.end(), [&](const SketchPlace& place) {
                return std::find(m_flawed.begin(), m_flawed.end(), place.entity) != m_flawed.end();
            });
            if (isOnFlawed || std::find(m_turned.begin(), m_turned.end(), static_cast<int>(i)) != m_turned.end())
                found.push_back(m_constraints[i]);
        }
        return found;
    }

    std::span<const int> m_constraints;
    Extract m_extract;
    SolverState m_state;
    Effort& m_effort;
    std::vector<std::vector<int>> m_circuits;
    std::vector<int> m_flawed, m_turned;
    bool m_isMet = true;  ///< targets and fixed entities agree
};

}  // namespace

bool canHold(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets, Care care,
             Effort& effort) {
    if (Trial(sketch, constraints, targets, effort).holds(care))
        return true;
    return care == Care::thorough && !effort.isSpent() && canBeSolved(sketch, constraints, targets, effort);
}

Suspects suspectsAmong(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                       Effort& effort) {
    return LeastSquares(sketch, constraints, targets, effort).suspects();
}

}  // namespace holdfast::solver::detail
