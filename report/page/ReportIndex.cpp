#include "report/page/ReportIndex.h"

#include <algorithm>

#include "document/Names.h"
#include "report/page/Wording.h"
#include "report/picture/Markup.h"

namespace holdfast::report {

namespace {

MarkTone toneOf(ConstraintFate fate) {
    static constexpr std::array tones{MarkTone::deleted, MarkTone::rePointed, MarkTone::rePointed,
                                      MarkTone::added,   MarkTone::added,     MarkTone::kept};
    return tones[static_cast<std::size_t>(fate)];
}

EntityTone toneOf(EntityFate fate) {
    static constexpr std::array tones{EntityTone::erased,  EntityTone::edited,   EntityTone::created,
                                      EntityTone::created, EntityTone::followed, EntityTone::plain};
    return tones[static_cast<std::size_t>(fate)];
}

bool isLost(ConstraintFate fate) {
    return fate == ConstraintFate::deleted;
}
bool isLost(EntityFate fate) {
    return fate == EntityFate::erased;
}
bool isNew(ConstraintFate fate) {
    return fate == ConstraintFate::added || fate == ConstraintFate::restored;
}
bool isNew(EntityFate fate) {
    return fate == EntityFate::created || fate == EntityFate::restored;
}

template <typename Map, typename Item>
void addAll(Map& map, const std::vector<Item>& items) {
    for (const Item& item : items)
        map.emplace(item.id, &item);
}

template <typename Map>
auto found(const Map& map, const std::string& id) {
    const auto entry = map.find(id);
    return entry == map.end() ? nullptr : entry->second;
}

}  // namespace

ReportIndex::ReportIndex(const FateReport& report) : m_report(report) {
    addAll(m_constraintsBefore, report.before.constraints);
    addAll(m_constraintsAfter, report.after.constraints);
    addAll(m_entities, report.after.entities);
    addAll(m_entities, report.before.entities);
    addAll(m_references, report.after.references);
    addAll(m_references, report.before.references);
}

const Constraint* ReportIndex::constraint(const std::string& id) const {
    const Constraint* after = found(m_constraintsAfter, id);
    return after != nullptr ? after : found(m_constraintsBefore, id);
}

const Entity* ReportIndex::entity(const std::string& id) const {
    return found(m_entities, id);
}

std::string_view ReportIndex::kindOf(const std::string& id) const {
    if (const Entity* known = entity(id))
        return kindName(known->shape);
    const BlockReference* reference = found(m_references, id);
    return reference == nullptr ? std::string_view() : document::typeName(reference->kind);
}

std::string_view ReportIndex::typeOf(const std::string& id) const {
    const Entity* known = entity(id);
    return known == nullptr ? kindOf(id) : typeName(known->shape);
}

std::vector<std::string> ReportIndex::entitiesOf(const std::string& id) const {
    std::vector<std::string> entities;
    for (const Constraint* each : {found(m_constraintsBefore, id), found(m_constraintsAfter, id)}) {
        if (each == nullptr)
            continue;
        for (const Place& place : each->refs)
            if (std::find(entities.begin(), entities.end(), place.entity) == entities.end())
                entities.push_back(place.entity);
    }
    return entities;
}

PictureNotes ReportIndex::notes(bool after) const {
    const auto isThere = [after](auto fate) { return after ? !isLost(fate) : !isNew(fate); };
    PictureNotes notes;
    for (const ConstraintOutcome& outcome : m_report.constraints) {
        if (outcome.fate == ConstraintFate::kept || !isThere(outcome.fate))
            continue;
        notes.constraints.emplace(outcome.constraint, toneOf(outcome.fate));
        const std::string why = explanation(outcome, "\u2192");
        notes.remarks.emplace(outcome.constraint, titleOf(*this, outcome.constraint) + "\n" +
                                                      std::string(fateName(outcome.fate)) +
                                                      (why.empty() ? "" : ": " + why));
    }
    for (const EntityOutcome& outcome : m_report.entities)
        if (outcome.fate != EntityFate::untouched && isThere(outcome.fate))
            notes.entities.emplace(outcome.entity, toneOf(outcome.fate));
    return notes;
}

PictureNotes ReportIndex::notesBefore() const {
    return notes(false);
}
PictureNotes ReportIndex::notesAfter() const {
    return notes(true);
}

std::string titleOf(const ReportIndex& index, const std::string& id) {
    const Constraint* constraint = index.constraint(id);
    if (constraint == nullptr)
        return id;
    std::string title = id + ": " + std::string(kindName(constraint->type));
    if (const std::string value = valueText(*constraint); !value.empty())
        title += " " + value;
    return title + " " + placeNames(*constraint);
}

std::string explanation(const ConstraintOutcome& outcome, std::string_view arrow) {
    std::string text;
    for (const PlaceMove& move : outcome.moves)
        text +=
            (text.empty() ? "" : ", ") + spokenPlace(move.from) + " " + std::string(arrow) + " " + spokenPlace(move.to);
    if (!text.empty() && !outcome.reason.empty())
        text += "; ";
    return text + outcome.reason;
}

std::string explanation(const EntityOutcome& outcome, const std::string& unit, std::string_view arrow) {
    const bool hasFollowed = outcome.fate == EntityFate::followed;
    std::string text;
    if (hasFollowed || (outcome.fate == EntityFate::edited && outcome.movedBy > 0.0))
        text = "moved by up to " + measure(outcome.movedBy) + " " + unit;
    for (const SizeChange& change : outcome.sizes)
        text += (text.empty() ? "" : ", ") + sizeWords(change.size) + " " + measure(change.before) + " " +
                std::string(arrow) + " " + measure(change.after) + (change.size == SizeKind::sweep ? " degrees" : "");
    return text;
}

}  // namespace holdfast::report
