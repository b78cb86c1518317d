#include "report/page/ReportJson.h"

#include <nlohmann/json.hpp>

#include <utility>

#include "document/Names.h"
#include "report/page/ParameterFates.h"
#include "report/page/ReportIndex.h"
#include "report/page/ReportObject.h"

namespace holdfast::report {

namespace {

using Json = nlohmann::ordered_json;

Json placeJson(const Place& place) {
    Json json{{"entity", place.entity}};
    json["point"] = placeText(place);
    return json;
}

Json constraintJson(const ConstraintOutcome& outcome, const report::ReportIndex& index) {
    Json json{{"id", outcome.constraint}, {"fate", fateName(outcome.fate)}};
    if (const Constraint* constraint = index.constraint(outcome.constraint))
        json["type"] = typeName(constraint->type);
    if (const Constraint* constraint = index.constraint(outcome.constraint);
        constraint != nullptr && !constraint->formula.empty())
        json["formula"] = constraint->formula;
    if (!outcome.reason.empty())
        json["reason"] = outcome.reason;
    for (const PlaceMove& move : outcome.moves)
        json["moves"].push_back({{"from", placeJson(move.from)}, {"to", placeJson(move.to)}});
    if (outcome.edit)
        json["edit"] = *outcome.edit;
    return json;
}

Json entityJson(const EntityOutcome& outcome, const report::ReportIndex& index) {
    Json json{{"id", outcome.entity}, {"fate", fateName(outcome.fate)}};
    if (const std::string_view type = index.typeOf(outcome.entity); !type.empty())
        json["type"] = type;
    if (outcome.fate == EntityFate::followed || outcome.fate == EntityFate::edited)
        json["moved_by"] = outcome.movedBy;
    for (const SizeChange& change : outcome.sizes)
        json["sizes"].push_back({{"size", sizeName(change.size)}, {"before", change.before}, {"after", change.after}});
    return json;
}

Json parameterJson(const ParameterOutcome& outcome) {
    Json json{{"name", outcome.name}, {"fate", outcome.fate}, {"formula", outcome.formula}, {"value", outcome.value}};
    if (outcome.valueBefore)
        json["value_before"] = *outcome.valueBefore;
    return json;
}

Json editJson(const EditOutcome& edit) {
    Json json{{"text", edit.text}, {"done", edit.done()}};
    if (!edit.done())
        json["error"] = edit.error;
    if (edit.shortfall.by > 0.0)
        json["shortfall"] = {{"by", edit.shortfall.by}, {"held_back_by", edit.shortfall.heldBackBy}};
    if (!edit.shortfall.leftAlone.empty())
        json["left_alone"] = edit.shortfall.leftAlone;
    if (!edit.remarks.empty())
        json["remarks"] = edit.remarks;
    return json;
}

Json solverJson(const SolverFigures& solver) {
    Json json = Json::object();
    if (solver.degreesOfFreedom)
        json["degrees_of_freedom"] = *solver.degreesOfFreedom;
    if (solver.iterations)
        json["iterations"] = *solver.iterations;
    if (solver.worstResidual)
        json["worst_residual"] = *solver.worstResidual;
    return json;
}

template <typename Fates, typename Outcomes>
Json totalsJson(const Fates& fates, const Outcomes& outcomes) {
    Json json = Json::object();
    const auto counts = countFates(outcomes);
    for (const auto fate : fates)
        json[std::string(fateName(fate))] = counts[static_cast<std::size_t>(fate)];
    return json;
}

}  // namespace

nlohmann::ordered_json reportJson(FateReport report) {
    const FateReport whole = completed(std::move(report));
    const report::ReportIndex index(whole);
    const std::string& ownName = whole.after.name.empty() ? whole.before.name : whole.after.name;
    Json json{{"drawing", whole.title.empty() ? ownName : whole.title}, {"length_unit", whole.after.lengthUnit}};
    for (const char* list : {"edits", "constraints", "entities"})
        json[list] = Json::array();
    for (const EditOutcome& edit : whole.edits)
        json["edits"].push_back(editJson(edit));
    for (const ConstraintOutcome& outcome : whole.constraints)
        json["constraints"].push_back(constraintJson(outcome, index));
    for (const EntityOutcome& outcome : whole.entities)
        json["entities"].push_back(entityJson(outcome, index));
    for (const ParameterOutcome& outcome : parameterOutcomes(whole))
        json["parameters"].push_back(parameterJson(outcome));
    json["totals"] = {{"constraints", totalsJson(kConstraintFates, whole.constraints)},
                      {"entities", totalsJson(kEntityFates, whole.entities)}};
    if (whole.solver)
        json["solver"] = solverJson(*whole.solver);
    return json;
}

std::string writeReportJson(FateReport report) {
    return reportJson(std::move(report)).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace holdfast::report
