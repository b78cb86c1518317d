#include "solver/src/diagnosis/Conflict.h"

#include <algorithm>
#include <utility>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/solving/SolverState.h"

namespace holdfast::solver::detail {

namespace {

constexpr int kMostQuestions = 200;

/// How many of the constraints nearest to the targets are suspected first; each time they are cleared, twice as many.
constexpr std::size_t kFirstSuspects = 16;

/// Can these hold together? Answered by trying to make them.
bool canHold(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
             Budget* budget) {
    const Extract extract(sketch, constraints, targets);
    SolverState workspace(extract.sketch(), buildSystem(extract.sketch()));
    workspace.setBudget(budget);
    if (!workspace.system().contradictions.empty())
        return false;
    for (const Target& target : extract.targets()) {
        if (!workspace.pin(target.value, target.goal))
            return false;
    }
    if (workspace.brokenConstantEquation() >= 0)
        return false;
    for (std::vector<int> seeds = workspace.violated(); !seeds.empty(); seeds = workspace.violated()) {
        if (!workspace.solveAround(std::span(seeds).first(1), Scope::part).isSolved)
            return false;
    }
    return true;
}

/// The items are the targets, then the constraints, in the order in which they are to be believed.
class Search {
public:
    Search(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets, Budget* budget)
        : m_sketch(sketch), m_constraints(constraints), m_targets(targets), m_budget(budget) {}

    ConflictSet run() {
        std::vector<int> all(m_targets.size() + m_constraints.size());
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = static_cast<int>(i);
        if (holds(all))
            return {};
        const std::vector<int> items = explain({}, false, all);
        if (isSpent(m_budget))
            return {};
        ConflictSet set;
        for (const int item : items) {
            const auto i = static_cast<std::size_t>(item);
            if (i < m_targets.size())
                set.targets.push_back(item);
            else
                set.constraints.push_back(m_constraints[i - m_targets.size()]);
        }
        std::sort(set.targets.begin(), set.targets.end());
        std::sort(set.constraints.begin(), set.constraints.end());
        return set;
    }

private:
    bool holds(std::span<const int> items) {
        ++m_questions;
        std::vector<int> constraints;
        std::vector<Target> targets;
        for (const int item : items) {
            const auto i = static_cast<std::size_t>(item);
            if (i < m_targets.size())
                targets.push_back(m_targets[i]);
            else
                constraints.push_back(m_constraints[i - m_targets.size()]);
        }
        return canHold(m_sketch, constraints, targets, m_budget);
    }

    std::vector<int> explain(std::vector<int> background, bool hasGrown, std::span<const int> items) {
        if (hasGrown && !holds(background))
            return {};
        if (items.size() == 1 || m_questions > kMostQuestions || isSpent(m_budget))
            return {items.begin(), items.end()};
        const auto first = items.first(items.size() / 2), second = items.subspan(items.size() / 2);
        const std::vector<int> fromSecond = explain(joined(background, first), true, second);
        std::vector<int> result = explain(joined(background, fromSecond), !fromSecond.empty(), first);
        result.insert(result.end(), fromSecond.begin(), fromSecond.end());
        return result;
    }

    static std::vector<int> joined(std::vector<int> a, std::span<const int> b) {
        a.insert(a.end(), b.begin(), b.end());
        std::sort(a.begin(), a.end());
        return a;
    }

    const SketchData& m_sketch;
    std::span<const int> m_constraints;
    std::span<const Target> m_targets;
    Budget* m_budget;
    int m_questions = 0;
};

int entityOfValue(const SketchData& sketch, int value) {
    const auto after = std::upper_bound(sketch.entities.begin(), sketch.entities.end(), value,
                                        [](int v, const SketchEntity& entity) { return v < entity.firstValue; });
    return static_cast<int>(after - sketch.entities.begin()) - 1;
}

/// The constraints in the order in which a walk from the targets' elements meets them; what it does not meet comes
/// last. Fixed elements lead nowhere.
std::vector<int> nearestFirst(const SketchData& sketch, std::span<const int> constraints,
                              std::span<const Target> targets) {
    std::vector<std::pair<int, int>> uses;
    for (std::size_t i = 0; i < constraints.size(); ++i)
        for (const SketchPlace& place : sketch.constraints[static_cast<std::size_t>(constraints[i])].refs)
            uses.emplace_back(place.entity, static_cast<int>(i));
    const ListTable usesOf = tabulate(static_cast<int>(sketch.entities.size()), uses);
    std::vector<int> entities, ordered;
    for (const Target& target : targets)
        entities.push_back(entityOfValue(sketch, target.value));
    std::vector<char> isSeen(sketch.entities.size(), 0), isTaken(constraints.size(), 0);
    const auto take = [&](int use) {
        if (std::exchange(isTaken[static_cast<std::size_t>(use)], 1))
            return;
        ordered.push_back(constraints[static_cast<std::size_t>(use)]);
        for (const SketchPlace& place : sketch.constraints[static_cast<std::size_t>(ordered.back())].refs)
            entities.push_back(place.entity);
    };
    for (std::size_t head = 0; head < entities.size(); ++head) {
        const auto entity = static_cast<std::size_t>(entities[head]);
        if (std::exchange(isSeen[entity], 1) || sketch.entities[entity].fixed)
            continue;
        for (const int use : usesOf[entities[head]])
            take(use);
    }
    for (std::size_t i = 0; i < constraints.size(); ++i)
        take(static_cast<int>(i));
    return ordered;
}

}  // namespace

ConflictSet findConflict(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                         Budget* budget) {
    const std::vector<int> ordered = nearestFirst(sketch, constraints, targets);
    for (std::size_t count = targets.empty() ? ordered.size() : kFirstSuspects; count < ordered.size(); count *= 2) {
        std::vector<int> suspects(ordered.begin(), ordered.begin() + static_cast<std::ptrdiff_t>(count));
        std::sort(suspects.begin(), suspects.end());
        ConflictSet set = Search(sketch, suspects, targets, budget).run();
        if (!set.constraints.empty() || !set.targets.empty())
            return set;
    }
    return Search(sketch, constraints, targets, budget).run();
}

}  // namespace holdfast::solver::detail
