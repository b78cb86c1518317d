#include "editing/fates/FateReport.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <unordered_set>
#include <utility>

namespace holdfast::editing {

namespace {

using Ids = std::unordered_set<std::string_view>;

template <typename Item>
Ids idsOf(std::span<const Item> items) {
    Ids ids(items.size());
    for (const Item& item : items)
        ids.insert(item.id);
    return ids;
}

/// Calls add(id, wasThere, isThere) for every item of either list that is not in `known`, in drawing order.
/// Most edits touch a few places of a drawing: what begins and ends both lists need not be looked up.
template <typename Item, typename Add>
void addMissing(const std::vector<Item>& before, const std::vector<Item>& after, Ids known, Add add) {
    const auto isSame = [](const Item& one, const Item& other) { return one.id == other.id; };
    const auto begin = std::mismatch(before.begin(), before.end(), after.begin(), after.end(), isSame);
    const auto end = std::mismatch(before.rbegin(), std::make_reverse_iterator(begin.first), after.rbegin(),
                                   std::make_reverse_iterator(begin.second), isSame);
    const std::span<const Item> head(before.begin(), begin.first), middle(begin.first, end.first.base()),
        tail(end.first.base(), before.end()), newMiddle(begin.second, end.second.base());
    const Ids was = idsOf(middle), is = idsOf(newMiddle);
    const auto addKept = [&](std::span<const Item> items) {
        for (const Item& item : items)
            if (!known.contains(item.id))
                add(item.id, true, true);
    };
    const auto addOthers = [&](std::span<const Item> items) {
        for (const Item& item : items)
            if (known.insert(item.id).second)
                add(item.id, was.contains(item.id), is.contains(item.id));
    };
    addKept(head);
    addOthers(middle);
    addKept(tail);
    addOthers(newMiddle);
}

template <typename Outcome>
void append(std::vector<Outcome>& outcomes, std::vector<Outcome>&& further) {
    outcomes.insert(outcomes.end(), std::make_move_iterator(further.begin()), std::make_move_iterator(further.end()));
}

template <typename Outcome>
void sortByFate(std::vector<Outcome>& outcomes) {
    std::stable_sort(outcomes.begin(), outcomes.end(),
                     [](const Outcome& one, const Outcome& other) { return one.fate < other.fate; });
}

template <std::size_t Size, typename Outcome>
std::array<std::size_t, Size> counted(const std::vector<Outcome>& outcomes) {
    std::array<std::size_t, Size> counts{};
    for (const Outcome& outcome : outcomes)
        ++counts[static_cast<std::size_t>(outcome.fate)];
    return counts;
}

}  // namespace

std::string_view fateName(ConstraintFate fate) {
    static constexpr std::array<std::string_view, kConstraintFates.size()> names{"deleted", "changed",  "re-pointed",
                                                                                 "added",   "restored", "kept"};
    return names[static_cast<std::size_t>(fate)];
}

std::string_view fateName(EntityFate fate) {
    static constexpr std::array<std::string_view, kEntityFates.size()> names{"erased",   "edited",   "created",
                                                                             "restored", "followed", "untouched"};
    return names[static_cast<std::size_t>(fate)];
}

std::string_view sizeName(SizeKind size) {
    static constexpr std::array<std::string_view, 6> names{"length",       "radius", "major_radius",
                                                           "minor_radius", "sweep",  "height"};
    return names[static_cast<std::size_t>(size)];
}

std::array<std::size_t, kConstraintFates.size()> countFates(const std::vector<ConstraintOutcome>& outcomes) {
    return counted<kConstraintFates.size()>(outcomes);
}

std::array<std::size_t, kEntityFates.size()> countFates(const std::vector<EntityOutcome>& outcomes) {
    return counted<kEntityFates.size()>(outcomes);
}

FateReport completed(FateReport report) {
    Ids knownConstraints, knownEntities;
    for (const ConstraintOutcome& outcome : report.constraints)
        knownConstraints.insert(outcome.constraint);
    for (const EntityOutcome& outcome : report.entities)
        knownEntities.insert(outcome.entity);
    std::vector<ConstraintOutcome> constraints;
    addMissing(report.before.constraints, report.after.constraints, std::move(knownConstraints),
               [&](const std::string& id, bool was, bool is) {
                   const ConstraintFate fate = was && is ? ConstraintFate::kept
                                               : was     ? ConstraintFate::deleted
                                                         : ConstraintFate::added;
                   constraints.push_back({.constraint = id, .fate = fate, .reason = {}, .moves = {}, .edit = {}});
               });
    std::vector<EntityOutcome> entities;
    const auto addEntity = [&](const std::string& id, bool was, bool is) {
        const EntityFate fate = was && is ? EntityFate::untouched : was ? EntityFate::erased : EntityFate::created;
        entities.push_back({.entity = id, .fate = fate});
    };
    addMissing(report.before.entities, report.after.entities, knownEntities, addEntity);
    addMissing(report.before.references, report.after.references, std::move(knownEntities), addEntity);
    append(report.constraints, std::move(constraints));
    append(report.entities, std::move(entities));
    sortByFate(report.constraints);
    sortByFate(report.entities);
    return report;
}

}  // namespace holdfast::editing
