#include "editing/Refusal.h"

#include <algorithm>
#include <cmath>

#include "document/Names.h"
#include "editing/EditContext.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

constexpr std::size_t kNamedInRefusal = 6;

const Constraint* find(const Document& document, const std::string& id) {
    const auto found = std::find_if(document.constraints.begin(), document.constraints.end(),
                                    [&](const Constraint& constraint) { return constraint.id == id; });
    return found == document.constraints.end() ? nullptr : &*found;
}

bool touches(const Constraint& constraint, const std::vector<std::string>& edited) {
    return std::any_of(constraint.refs.begin(), constraint.refs.end(), [&](const Place& place) {
        return std::find(edited.begin(), edited.end(), place.entity) != edited.end();
    });
}

std::string listOf(std::vector<std::string> ids, const Document& document, const std::vector<std::string>& edited) {
    if (ids.size() > kNamedInRefusal)
        std::stable_partition(ids.begin(), ids.end(), [&](const std::string& id) {
            const Constraint* constraint = find(document, id);
            return constraint != nullptr && touches(*constraint, edited);
        });
    std::string list;
    for (std::size_t i = 0; i < std::min(ids.size(), kNamedInRefusal); ++i) {
        const Constraint* constraint = find(document, ids[i]);
        list += (i == 0 ? "" : ", ") + (constraint == nullptr ? ids[i] : spokenConstraint(*constraint));
    }
    if (ids.size() > kNamedInRefusal)
        list += " and " + std::to_string(ids.size() - kNamedInRefusal) + " more";
    return list;
}

}  // namespace

std::string spokenConstraint(const Constraint& constraint) {
    std::string words = constraint.id + " (" + std::string(typeName(constraint.type));
    for (const Place& place : constraint.refs)
        words += " " + spokenPlace(place);
    if (constraint.value)
        words += ", " + spoken(spokenValue(constraint.type, *constraint.value));
    if (!constraint.formula.empty())
        words += " = " + constraint.formula;
    return words + ")";
}

namespace {

/// "the new distance base rib"; of one that the drawing has switched off "c7 (distance base rib, 12)".
std::string spokenNew(const Constraint& added, const Document& document) {
    if (std::any_of(document.constraints.begin(), document.constraints.end(),
                    [&](const Constraint& known) { return known.id == added.id; }))
        return spokenConstraint(added);
    std::string words = "the new " + std::string(typeName(added.type));
    for (const Place& place : added.refs)
        words += " " + spokenPlace(place);
    return words;
}

std::string againstNew(const Evaluation& evaluation, const Document& document, const std::vector<std::string>& edited,
                       const std::vector<Constraint>& added) {
    std::vector<std::string> conflicting = evaluation.conflicting;
    for (const Constraint& constraint : added)
        std::erase(conflicting, constraint.id);
    if (conflicting.empty())
        return spokenNew(added.front(), document) + " cannot hold, whatever else is deleted";
    const bool isSingle = conflicting.size() == 1;
    return "the constraints do not allow " + spokenNew(added.front(), document) + ": " +
           listOf(conflicting, document, edited) + (isSingle ? " stands" : " stand") + " in the way; delete " +
           (isSingle ? "it" : "one of them") + (added.front().value ? " or choose another value" : "");
}

std::string reasonOf(const Evaluation& evaluation, const Document& document, const std::vector<std::string>& edited,
                     const std::vector<Constraint>& added, const std::vector<std::string>& determined) {
    if (!added.empty() && !evaluation.conflicting.empty())
        return againstNew(evaluation, document, edited, added);
    if (!evaluation.conflicting.empty())
        return "the constraints do not allow it: " + listOf(evaluation.conflicting, document, edited) +
               (evaluation.conflicting.size() == 1 ? " stands" : " stand") +
               " in the way; delete one of them or choose another value";
    if (!evaluation.complaint.empty())
        return "the constraints cannot be solved after it: " + evaluation.complaint;
    const Constraint* worst = find(document, evaluation.worst);
    const std::string found = "the solver found no way to keep the constraints" +
                              (worst == nullptr ? std::string() : ", worst " + spokenConstraint(*worst));
    if (determined.empty())
        return found + "; try a smaller step or delete a constraint";
    std::string names;
    for (const std::string& name : determined)
        names += (names.empty() ? "" : ", ") + name;
    return found + ": " + names + (determined.size() == 1 ? " is" : " are") +
           " fully determined by them; delete one of them or change a dimension";
}

/// What of its way an edit has to go for it to be told.
constexpr double kToldPart = 0.01;

/// Entities up to which the freedom of a drawing is found in some hundredths of a second.
constexpr std::size_t kMostJudged = 1000;

/// How far the edit could be followed; nothing when it was stopped at once.
std::string reachOf(const Evaluation& evaluation) {
    if (evaluation.followed < kToldPart)
        return {};
    const double percent = std::floor(100.0 * evaluation.followed);
    std::string words;
    for (const LedDimension& led : evaluation.led)
        words += "; " + led.id + " could be led from " + spoken(led.from) + " to " + spoken(led.to);
    return words.empty() ? "; it could be followed for " + spoken(percent) + " % of its way" : words;
}

}  // namespace

std::string refusalOf(const Evaluation& evaluation, const Document& document, const std::vector<std::string>& edited,
                      const std::vector<Constraint>& added, const std::vector<std::string>& determined) {
    return reasonOf(evaluation, document, edited, added, determined) + reachOf(evaluation);
}

bool isUnexplained(const Evaluation& evaluation) {
    return evaluation.conflicting.empty() && evaluation.complaint.empty() && evaluation.followed < kToldPart;
}

std::vector<std::string> determinedAmong(const Document& document, const std::vector<std::string>& entities) {
    std::vector<std::string> determined;
    if (document.entities.size() > kMostJudged)
        return determined;
    std::vector<EntityMotions> motions;
    try {
        motions = DocumentSketch(document).freeMotions();
    } catch (const UnsolvableDocument&) {
        return determined;
    }
    for (std::size_t i = 0; i < motions.size(); ++i) {
        const Entity& entity = document.entities[i];
        if (!entity.fixed && motions[i].motions.empty() &&
            std::find(entities.begin(), entities.end(), entity.id) != entities.end())
            determined.push_back(entity.id);
    }
    return determined;
}

std::vector<std::string> remarksOn(const Shortfall& shortfall, const Document& document,
                                   const std::vector<std::string>& edited) {
    std::vector<std::string> remarks;
    if (shortfall.by > 0.0)
        remarks.push_back("ends " + spoken(shortfall.by) + " short of what was asked" +
                          (shortfall.heldBackBy.empty()
                               ? std::string()
                               : ", held back by " + listOf(shortfall.heldBackBy, document, edited)));
    if (!shortfall.leftAlone.empty())
        remarks.push_back("did not hold before and " + std::string(shortfall.leftAlone.size() == 1 ? "is" : "are") +
                          " left as " + (shortfall.leftAlone.size() == 1 ? "it was: " : "they were: ") +
                          listOf(shortfall.leftAlone, document, edited));
    return remarks;
}

}  // namespace holdfast::editing
