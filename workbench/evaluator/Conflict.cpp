#include "workbench/evaluator/Conflict.h"

#include <algorithm>

#include "workbench/evaluator/Extract.h"
#include "workbench/evaluator/Workspace.h"

namespace holdfast {

namespace {

constexpr int kMostQuestions = 600;

/// Can these hold together? Answered by trying to make them.
bool canHold(const Figure& figure, std::span<const int> constraints, std::span<const Target> targets) {
    const Extract extract(figure, constraints, targets);
    Workspace workspace(extract.figure(), buildSystem(extract.figure()));
    if (!workspace.system().contradictions.empty())
        return false;
    for (const Target& target : extract.targets()) {
        if (!workspace.pin(target.value, target.goal))
            return false;
    }
    if (workspace.brokenConstantEquation() >= 0)
        return false;
    for (std::vector<int> seeds = workspace.violated(); !seeds.empty(); seeds = workspace.violated()) {
        if (!workspace.solveAround(std::span(seeds).first(1), Reach::part).isSolved)
            return false;
    }
    return true;
}

/// The items are the targets, then the constraints, in the order in which they are to be believed.
class Search {
public:
    Search(const Figure& figure, std::span<const int> constraints, std::span<const Target> targets)
        : m_figure(figure), m_constraints(constraints), m_targets(targets) {}

    ConflictSet run() {
        std::vector<int> all(m_targets.size() + m_constraints.size());
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = static_cast<int>(i);
        if (holds(all))
            return {};
        const std::vector<int> items = explain({}, false, all);
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
        return canHold(m_figure, constraints, targets);
    }

    std::vector<int> explain(std::vector<int> background, bool hasGrown, std::span<const int> items) {
        if (hasGrown && !holds(background))
            return {};
        if (items.size() == 1 || m_questions > kMostQuestions)
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

    const Figure& m_figure;
    std::span<const int> m_constraints;
    std::span<const Target> m_targets;
    int m_questions = 0;
};

}  // namespace

ConflictSet findConflict(const Figure& figure, std::span<const int> constraints, std::span<const Target> targets) {
    return Search(figure, constraints, targets).run();
}

}  // namespace holdfast
