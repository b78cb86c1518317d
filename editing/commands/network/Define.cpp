#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "document/OutOfReach.h"
#include "editing/Commands.h"
#include "editing/define/Missing.h"
#include "geometry/Tolerances.h"

namespace holdfast::editing {

namespace {

/// More decimals than a dimension can bear.
constexpr int kMostDecimals = 9;

/// More names than a remark bears.
constexpr std::size_t kMostNames = 8;

std::string listed(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i)
        list += (i == 0 ? "" : ", ") + names[i];
    return names.size() <= kMostNames ? list : list + " and " + std::to_string(names.size() - kMostNames) + " more";
}

void remarkOn(const Missing& missing, EditContext& context) {
    if (missing.constraints.empty() && missing.stillFree.empty() && missing.leftAlone.empty() &&
        missing.outOfReach.empty())
        context.remarks.emplace_back("nothing was missing: all of it is fully determined already");
    if (!missing.stillFree.empty())
        context.remarks.push_back(listed(missing.stillFree) +
                                  " can still move: there is no constraint that takes the last of it");
    if (!missing.outOfReach.empty())
        context.remarks.push_back(leftOutOfReach(missing.outOfReach));
    if (!missing.leftAlone.empty())
        context.remarks.push_back(listed(missing.leftAlone) + (missing.leftAlone.size() == 1 ? " hangs" : " hang") +
                                  " on constraints that do not hold; nothing was added there");
}

/// What dimensions become when they are rounded; those that stay, and those that would become nothing, are left out.
std::vector<DimensionGoal> roundedGoals(const EditContext& context, const std::vector<std::string>& added,
                                        int decimals) {
    const double unit = std::pow(10.0, decimals);
    std::vector<DimensionGoal> goals;
    for (const std::string& id : added) {
        const Constraint constraint = *context.drawing.constraint(id);
        if (!constraint.value)
            continue;
        const double said = spokenValue(constraint.type, *constraint.value);
        const double rounded = std::round(said * unit) / unit;
        if (rounded != 0.0 && rounded != said)
            goals.push_back({id, keptValue(constraint.type, rounded)});
    }
    return goals;
}

bool isLed(EditContext& context, const std::vector<DimensionGoal>& goals) {
    std::vector<std::string> words;
    for (const DimensionGoal& goal : goals) {
        const Constraint was = *context.drawing.constraint(goal.id);
        words.push_back("rounded from " + spoken(spokenValue(was.type, *was.value)));
    }
    if (!context.evaluator.group().lead(goals))
        return false;
    for (std::size_t i = 0; i < goals.size(); ++i)
        context.reasons.note(goals[i].id, words[i]);
    return true;
}

/// All at once; where that cannot be, one by one, and what cannot stays as it stands.
void round(EditContext& context, const std::vector<std::string>& added, int decimals) {
    const std::vector<DimensionGoal> goals = roundedGoals(context, added, decimals);
    if (goals.empty() || isLed(context, goals))
        return;
    std::vector<std::string> left;
    for (const DimensionGoal& goal : goals)
        if (!isLed(context, {goal}))
            left.push_back(goal.id);
    if (!left.empty())
        context.remarks.push_back(listed(left) + " could not be rounded and " +
                                  (left.size() == 1 ? "stands" : "stand") + " as measured");
}

}  // namespace

void require(const Define& edit, const Drawing& drawing) {
    std::unordered_set<std::string> seen;
    for (const Name& name : edit.entities) {
        requireEntity(drawing, name, {});
        if (!seen.insert(name.value).second)
            throw EditError(name.value + " is named twice; name each entity once");
    }
    if (edit.decimals && (edit.decimals->value < 0 || edit.decimals->value > kMostDecimals))
        throw RefusedWord({"dimensions are rounded to 0 to 9 decimals", {}, edit.decimals->column});
}

void perform(const Define& edit, EditContext& context) {
    require(edit, context.drawing);
    const Missing missing = missingIn(context.drawing.document(), valuesOf(edit.entities));
    std::vector<std::string> added;
    for (const Proposal& proposal : missing.constraints) {
        added.push_back(context.drawing.addConstraint(proposal.constraint));
        context.reasons.note(added.back(), proposal.reason);
    }
    remarkOn(missing, context);
    if (edit.decimals)
        round(context, added, edit.decimals->value);
}

}  // namespace holdfast::editing
