#include "solver/src/solving/Solve.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/solving/SolverState.h"

namespace holdfast::solver::detail {

namespace {

/// How much more than others the values of edited elements count in the movement, and what targets count when they
/// are wishes.
constexpr double kEditedEmphasis = 10.0;
constexpr double kTargetEmphasis = 1e3;
constexpr double kSizeWeight = 1e2;

class Stopwatch {
public:
    double seconds() const { return std::chrono::duration<double>(Budget::Clock::now() - m_start).count(); }

private:
    Budget::Clock::time_point m_start = Budget::Clock::now();
};

/// One solve of a sketch in one level.
class Run {
public:
    Run(SketchData& sketch, const SolveRequest& request, RelaxationLevel level)
        : m_sketch(sketch), m_request(request), m_tier(level), m_workspace(sketch, systemFor(sketch, request, level)) {
        m_workspace.setBudget(request.budget);
    }

    SolveResult solve() {
        m_result.level = m_tier;
        wishEdited();
        if (!placeTargets() || !meetsConstants() || !solveParts() || isOverBudget() || !leavesPinnedSound())
            return std::move(m_result);
        accept();
        return std::move(m_result);
    }

    /// Constraints that the failure points at, the likeliest culprits; all of the part that failed when in doubt.
    std::vector<int> suspects() const { return m_suspects; }

private:
    static EquationSystem systemFor(const SketchData& sketch, const SolveRequest& request, RelaxationLevel level) {
        if (level == RelaxationLevel::exact)
            return buildSystem(sketch);
        const double weight = level == RelaxationLevel::sizes ? 0.0 : kSizeWeight;
        return buildSystem(sketch, bindingConstraints(sketch), {request.edited, weight});
    }

    void wishEdited() {
        for (const int number : m_request.edited) {
            const SketchEntity& entity = m_sketch.entities[at(number)];
            for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
                m_workspace.wish(v, m_sketch.values[at(v)], kEditedEmphasis);
        }
    }

    bool placeTargets() {
        for (std::size_t i = 0; i < m_request.targets.size(); ++i) {
            const Target& target = m_request.targets[i];
            if (m_tier != RelaxationLevel::exact) {
                m_workspace.wish(target.value, target.goal, kTargetEmphasis);
                if (const int u = system().links[at(target.value)].unknown; u >= 0)
                    m_seeds.push_back(u);
            } else if (!m_workspace.pin(target.value, target.goal)) {
                m_result.status = SolveStatus::conflicting;
                m_result.contradictedTargets.push_back(static_cast<int>(i));
                suspectPart();
                return false;
            }
        }
        return true;
    }

    bool meetsConstants() {
        if (!system().contradictions.empty()) {
            m_result.status = SolveStatus::conflicting;
            const Contradiction& first = system().contradictions.front();
            m_suspects = first.others;
            m_suspects.push_back(first.constraint);
            tidySuspects();
            return false;
        }
        const int broken = m_workspace.brokenConstantEquation();
        if (broken < 0)
            return true;
        m_result.status = SolveStatus::conflicting;
        noteWorst(broken);
        suspectPart();
        return false;
    }

    bool solveParts() {
        std::vector<int> seeds = m_workspace.violated();
        seeds.insert(seeds.end(), m_seeds.begin(), m_seeds.end());
        std::vector<char> isSeed(at(system().unknownCount), 0);
        for (const int seed : seeds)
            isSeed[at(seed)] = 1;
        std::vector<int> mine;
        for (const int seed : seeds) {
            if (!isSeed[at(seed)])
                continue;
            const std::vector<int> part = m_workspace.neighbourhood().partOf({&seed, 1});
            mine.clear();
            for (const int u : part) {
                if (std::exchange(isSeed[at(u)], 0) != 0)
                    mine.push_back(u);
            }
            if (!solvePart(part, mine))
                return false;
        }
        return true;
    }

    bool solvePart(const std::vector<int>& part, const std::vector<int>& seeds) {
        const Attempt attempt = m_workspace.solveAround(seeds, m_request.reach);
        m_result.iterations += attempt.iterations;
        if (attempt.isSolved)
            return true;
        m_result.degeneracy = attempt.degeneracy;
        m_result.status = attempt.degeneracy ? SolveStatus::degenerate : SolveStatus::unreached;
        for (const int u : part) {
            for (const int e : system().equationsOfUnknown[u])
                noteWorst(e);
        }
        suspectPart(part);
        return false;
    }

    /// What was found until then may hold, but need not be the nearest: it is not taken.
    bool isOverBudget() {
        if (!m_workspace.hasSpentBudget())
            return false;
        m_result.status = SolveStatus::unreached;
        return true;
    }

    bool leavesPinnedSound() {
        m_result.degeneracy = m_workspace.degeneracyInConstants();
        if (!m_result.degeneracy)
            return true;
        m_result.status = SolveStatus::degenerate;
        suspectPart();
        return false;
    }

    void noteWorst(int equation) {
        const double residual = system().residualOf(equation);
        if (!(residual <= m_result.residual)) {
            m_result.residual = residual;
            m_result.worstConstraint = system().set.equations[at(equation)].constraint;
        }
    }

    void suspectPart(std::span<const int> part) { suspectAround(entitiesOf(system(), part)); }

    /// Ties leave no equations, so the walk goes by elements: constraints on them, the elements of those, and so on;
    /// fixed elements connect nothing.
    void suspectAround(std::vector<int> entities) {
        std::vector<std::pair<int, int>> uses;
        for (const int c : bindingConstraints(m_sketch)) {
            for (const SketchPlace& place : m_sketch.constraints[at(c)].refs)
                uses.emplace_back(place.entity, c);
        }
        const ListTable constraintsOf = tabulate(static_cast<int>(m_sketch.entities.size()), uses);
        std::vector<char> isSeen(m_sketch.entities.size(), 0), isTaken(m_sketch.constraints.size(), 0);
        for (std::size_t head = 0; head < entities.size(); ++head) {
            const int entity = entities[head];
            if (std::exchange(isSeen[at(entity)], 1) || m_sketch.entities[at(entity)].fixed)
                continue;
            for (const int c : constraintsOf[entity]) {
                if (std::exchange(isTaken[at(c)], 1))
                    continue;
                m_suspects.push_back(c);
                for (const SketchPlace& place : m_sketch.constraints[at(c)].refs)
                    entities.push_back(place.entity);
            }
        }
        tidySuspects();
    }

    void suspectPart() {
        std::vector<int> entities = m_request.edited;
        for (const Target& target : m_request.targets)
            entities.push_back(system().entityOfValue[at(target.value)]);
        for (std::size_t i = 0; i < m_sketch.entities.size() && m_request.targets.empty(); ++i)
            entities.push_back(static_cast<int>(i));
        suspectAround(std::move(entities));
    }

    void tidySuspects() {
        std::erase_if(m_suspects, [](int c) { return c < 0; });
        std::sort(m_suspects.begin(), m_suspects.end());
        m_suspects.erase(std::unique(m_suspects.begin(), m_suspects.end()), m_suspects.end());
    }

    void accept() {
        EquationSystem& s = system();
        for (int e = 0; e < static_cast<int>(s.set.equations.size()); ++e)
            noteWorst(e);
        std::vector<double> moved(m_sketch.entities.size(), 0.0);
        bool hasMoved = false;
        for (std::size_t v = 0; v < m_sketch.values.size(); ++v) {
            const double way = std::abs(s.values[v] - m_sketch.values[v]) * s.metric[v];
            moved[at(s.entityOfValue[v])] = std::max(moved[at(s.entityOfValue[v])], way);
            hasMoved = hasMoved || s.values[v] != m_sketch.values[v];
            m_sketch.values[v] = s.values[v];
        }
        m_result.status = hasMoved ? SolveStatus::solved : SolveStatus::unchanged;
        for (std::size_t i = 0; i < moved.size(); ++i) {
            if (moved[i] > 0.0)
                m_result.movements.push_back({static_cast<int>(i), moved[i]});
        }
    }

    EquationSystem& system() { return m_workspace.system(); }

    SketchData& m_sketch;
    const SolveRequest& m_request;
    RelaxationLevel m_tier;
    SolverState m_workspace;
    SolveResult m_result;
    std::vector<int> m_seeds;
    std::vector<int> m_suspects;
};

void nameConflict(const SketchData& sketch, std::span<const int> suspects, std::span<const Target> targets,
                  Budget* budget, SolveResult& result) {
    const ConflictSet conflict = findConflict(sketch, suspects, targets, budget);
    if (conflict.constraints.empty() && conflict.targets.empty())
        return;
    if (result.status == SolveStatus::unreached)
        result.status = SolveStatus::conflicting;
    result.conflicting = conflict.constraints;
    result.contradictedTargets = conflict.targets;
}

}  // namespace

SolveResult solve(SketchData& sketch, const SolveRequest& request) {
    SolveResult result;
    SolveTimes times;
    std::vector<int> suspects;
    for (int level = 0; level <= static_cast<int>(request.lastLevel); ++level) {
        const Stopwatch building;
        Run run(sketch, request, static_cast<RelaxationLevel>(level));
        times.building += building.seconds();
        const Stopwatch iterating;
        SolveResult next = run.solve();
        times.iterating += iterating.seconds();
        next.times = times;
        if (next.isSolved())
            return next;
        if (level == 0) {
            result = std::move(next);
            suspects = run.suspects();
        }
        if (isSpent(request.budget))
            break;
    }
    const Stopwatch explaining;
    if (request.namesConflicts && !isSpent(request.budget))
        nameConflict(sketch, suspects, request.targets, request.budget, result);
    times.explaining = explaining.seconds();
    result.times = times;
    return result;
}

}  // namespace holdfast::solver::detail
