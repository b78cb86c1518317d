#include "solver/src/diagnosis/Conflict.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Connections.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Most conflicts that are searched for: more than anybody reads.
constexpr int kMostConflicts = 8;

/// How many of the constraints nearest to the suspects are looked at when those alone can hold; then twice as many.
constexpr std::size_t kFirstSuspects = 16;

/// Up to so many constraints are proven one by one at once; more are halved first.
constexpr std::size_t kNarrow = 24;

/// Narrows constraints and targets down. The items are the targets, then the constraints, in the order in which they
/// are to be believed.
class Narrowing {
public:
    Narrowing(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
              Effort& effort)
        : m_sketch(sketch), m_constraints(constraints), m_targets(targets), m_effort(effort) {}

    /// What contradicts itself already to first order is mostly as small as can be: only that is to be proven.
    ConflictSet run(bool isNarrow = false) {
        std::vector<int> all(m_targets.size() + m_constraints.size());
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = static_cast<int>(i);
        assert(std::is_sorted(m_constraints.begin(), m_constraints.end()));
        if (m_effort.isSpent() || holds(all, Care::quick) || m_effort.isSpent())
            return {};
        std::vector<int> items = isNarrow ? all : explain({}, false, all);
        std::sort(items.begin(), items.end());
        const bool isMinimal = prove(items);
        // What was refused in a hurry may hold.
        if (isMinimal && holds(items, Care::thorough))
            return {};
        ConflictSet set = setOf(items);
        set.isMinimal = isMinimal;
        return set;
    }

private:
    bool holds(std::span<const int> items, Care care) {
        if (items.empty())
            return true;
        const ConflictSet set = setOf(items);
        std::vector<Target> targets;
        for (const int target : set.targets)
            targets.push_back(m_targets[at(target)]);
        return canHold(m_sketch, set.constraints, targets, care, m_effort);
    }

    ConflictSet setOf(std::span<const int> items) const {
        ConflictSet set;
        for (const int item : items) {
            if (at(item) < m_targets.size())
                set.targets.push_back(item);
            else
                set.constraints.push_back(m_constraints[at(item) - m_targets.size()]);
        }
        std::sort(set.targets.begin(), set.targets.end());
        std::sort(set.constraints.begin(), set.constraints.end());
        return set;
    }

    std::vector<int> explain(std::vector<int> background, bool hasGrown, std::span<const int> items) {
        if (hasGrown && !holds(background, Care::quick))
            return {};
        if (items.size() == 1 || m_effort.isSpent())
            return {items.begin(), items.end()};
        const auto first = items.first(items.size() / 2), second = items.subspan(items.size() / 2);
        const std::vector<int> fromSecond = explain(joined(background, first), true, second);
        std::vector<int> result = explain(joined(background, fromSecond), !fromSecond.empty(), first);
        result.insert(result.end(), fromSecond.begin(), fromSecond.end());
        return result;
    }

    /// Leaves each item out once; one without which the others cannot hold either does not belong to the set. What is
    /// needed stays so when others go, as the solution without it holds for fewer as well. Most are needed, which a
    /// hurried look shows. False when the effort is spent before the last one.
    bool prove(std::vector<int>& items) {
        std::vector<int> doubtful;
        for (const int item : items) {
            if (m_effort.isSpent())
                return false;
            if (!holds(without(items, item), Care::quick))
                doubtful.push_back(item);
        }
        for (const int item : doubtful) {
            std::vector<int> rest = without(items, item);
            if (m_effort.isSpent())
                return false;
            if (holds(rest, Care::thorough))
                continue;
            if (m_effort.isSpent())
                return false;
            items = std::move(rest);
        }
        return true;
    }

    static std::vector<int> without(std::vector<int> items, int item) {
        std::erase(items, item);
        return items;
    }

    static std::vector<int> joined(std::vector<int> a, std::span<const int> b) {
        a.insert(a.end(), b.begin(), b.end());
        std::sort(a.begin(), a.end());
        return a;
    }

    const SketchData& m_sketch;
    std::span<const int> m_constraints;
    std::span<const Target> m_targets;
    Effort& m_effort;
};

/// Where a walk for more suspects begins: at the targets, else at the suspects there are.
std::vector<int> startOfWalk(const SketchData& sketch, std::span<const int> suspects, std::span<const Target> targets) {
    std::vector<int> entities;
    for (const Target& target : targets)
        entities.push_back(entityOfValue(sketch, target.value));
    for (const int c : suspects) {
        for (const SketchPlace& place : sketch.constraints[at(c)].refs)
            entities.push_back(place.entity);
    }
    return entities;
}

ConflictSet findAmong(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                      Effort& effort) {
    const auto [circuits, groups] = suspectsAmong(sketch, constraints, targets, effort);
    if (groups.empty())
        return {};
    for (const std::vector<int>& circuit : circuits) {
        if (ConflictSet set = Narrowing(sketch, circuit, targets, effort).run(circuit.size() <= kNarrow);
            !set.isEmpty() || effort.isSpent())
            return set;
    }
    for (const std::vector<int>& group : groups) {
        if (ConflictSet set = Narrowing(sketch, group, targets, effort).run(); !set.isEmpty() || effort.isSpent())
            return set;
    }
    const std::vector<int> ordered =
        surroundingsOf(sketch, constraints, startOfWalk(sketch, groups.back(), targets)).constraints;
    for (std::size_t count = kFirstSuspects;; count *= 2) {
        std::vector<int> suspects(ordered.begin(),
                                  ordered.begin() + static_cast<std::ptrdiff_t>(std::min(count, ordered.size())));
        std::sort(suspects.begin(), suspects.end());
        ConflictSet set = Narrowing(sketch, suspects, targets, effort).run();
        if (!set.isEmpty() || effort.isSpent() || count >= ordered.size())
            return set;
    }
}

}  // namespace

ConflictSet findConflict(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                         Effort& effort) {
    ConflictSet set = findAmong(sketch, constraints, targets, effort);
    if (!set.isEmpty() || effort.isSpent())
        return set;
    const std::vector<int> all = bindingConstraints(sketch);
    assert(std::includes(all.begin(), all.end(), constraints.begin(), constraints.end()));
    return all.size() == constraints.size() ? set : findAmong(sketch, all, targets, effort);
}

ConflictSet findConflict(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets,
                         Budget* budget) {
    Effort effort(budget, Effort::kMostForEdit);
    return findConflict(sketch, constraints, targets, effort);
}

std::vector<ConflictSet> findConflicts(const SketchData& sketch, Budget* budget) {
    Effort effort(budget);
    std::vector<ConflictSet> conflicts;
    SketchData trial = sketch;
    for (int i = 0; i < kMostConflicts && !effort.isSpent(); ++i) {
        ConflictSet set = findConflict(trial, bindingConstraints(trial), {}, effort);
        if (set.isEmpty())
            break;
        trial.constraints[at(set.constraints.back())].active = false;
        conflicts.push_back(std::move(set));
    }
    std::sort(conflicts.begin(), conflicts.end(),
              [](const ConflictSet& a, const ConflictSet& b) { return a.constraints < b.constraints; });
    return conflicts;
}

}  // namespace holdfast::solver::detail
