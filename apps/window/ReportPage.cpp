#include "apps/window/ReportPage.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "apps/window/Answers.h"
#include "apps/window/Bundle.h"
#include "apps/window/DrawingJson.h"
#include "report/page/HtmlReport.h"
#include "report/page/HtmlTables.h"
#include "report/page/ReportIndex.h"

namespace holdfast::window {

namespace {

/// Entities over all states of the drawing whose freedom is told: about two seconds' work.
constexpr std::size_t kMostDiagnosed = 100'000;
class StepsText {
public:
    StepsText(const FateReport& report, std::span<const EditResult> results, std::span<const DrawingChange> changes)
        : m_report(report), m_results(results), m_changes(changes) {}

    std::string text() {
        Json language = languageJson();
        language.erase("verbs");
        language.erase("glyphs");  // the page has them
        return "{\"language\":" + textOf(language) + ",\n\"before\":" + drawingText(m_report.before) +
               ",\n\"whole\":" + textOf(wholeJson()) + ",\n\"steps\":" + stepsText() +
               ",\n\"freedom\":" + freedomText() + "}";
    }

private:
    Json constraintsJson(const std::vector<ConstraintOutcome>& outcomes) const {
        Json json = Json::array();
        for (const ConstraintOutcome& each : outcomes)
            if (each.fate != ConstraintFate::kept)
                json.push_back({{"id", each.constraint},
                                {"fate", fateName(each.fate)},
                                {"class", fateClass(each.fate)},
                                {"why", explanation(each, "\u2192")}});
        return json;
    }

    Json entitiesJson(const std::vector<EntityOutcome>& outcomes) const {
        Json json = Json::array();
        for (const EntityOutcome& each : outcomes)
            if (each.fate != EntityFate::untouched)
                json.push_back({{"id", each.entity},
                                {"fate", fateName(each.fate)},
                                {"class", fateClass(each.fate)},
                                {"why", explanation(each, m_report.after.lengthUnit, "\u2192")}});
        return json;
    }

    Json wholeJson() const {
        return {{"constraints", constraintsJson(m_report.constraints)}, {"entities", entitiesJson(m_report.entities)}};
    }

    /// A refused edit changes nothing.
    std::string stepsText() const {
        std::size_t done = 0;
        return listText(m_results, [&](const EditResult& result) {
            const EditOutcome& outcome = result.outcome;
            Json json{{"text", outcome.text},
                      {"error", outcome.error},
                      {"remarks", outcome.remarks},
                      {"constraints", constraintsJson(result.fates.constraints)},
                      {"entities", entitiesJson(result.fates.entities)}};
            if (outcome.done())
                json["change"] = changeJson(m_changes[done++]);
            return json;
        });
    }

    /// An entry for the drawing before and after each edit: null where it was not looked at, else with those entities
    /// alone that are told another thing of than in the last one.
    std::string freedomText() {
        const std::size_t entities = std::max(m_report.before.entities.size(), m_report.after.entities.size());
        const bool looks = 2 * entities <= kMostDiagnosed;
        const bool looksBetween = (m_changes.size() + 1) * entities <= kMostDiagnosed;
        Json states = Json::array();
        states.push_back(looks ? freshFreedom(m_report.before) : Json());
        OrderedDocument between(looksBetween ? m_report.before : Document());
        std::size_t done = 0;
        for (const EditResult& result : m_results) {
            if (result.outcome.done() && looksBetween)
                between.apply(m_changes[done]);
            done += result.outcome.done() ? 1 : 0;
            const bool isLast = &result == &m_results.back();
            states.push_back(looksBetween      ? freshFreedom(between.document)
                             : looks && isLast ? freshFreedom(m_report.after)
                                               : Json());
        }
        return textOf(states);
    }

    Json freshFreedom(const Document& document) {
        Json freedom = freedomJson(document);
        if (!freedom.contains("entities"))
            return freedom;
        Json fresh = Json::object();
        for (auto& [id, told] : freedom["entities"].get_ref<Json::object_t&>())
            if (std::string text = textOf(told); std::exchange(m_told[id], text) != text)
                fresh.get_ref<Json::object_t&>().emplace_back(id, std::move(told));
        freedom["entities"] = std::move(fresh);
        return freedom;
    }

    const FateReport& m_report;
    std::span<const EditResult> m_results;
    std::span<const DrawingChange> m_changes;
    std::unordered_map<std::string, std::string> m_told;
};

/// Entities or constraints by their ids, with where they stand.
template <class Item>
std::unordered_map<std::string_view, std::size_t> placesOf(const std::vector<Item>& items) {
    std::unordered_map<std::string_view, std::size_t> places;
    for (std::size_t i = 0; i < items.size(); ++i)
        places.emplace(items[i].id, i);
    return places;
}

template <class Change, class Item>
std::vector<Change> changesBetween(const std::vector<Item>& before, const std::vector<Item>& after) {
    const auto was = placesOf(before), is = placesOf(after);
    std::vector<Change> changes;
    for (std::size_t i = 0; i < before.size(); ++i)
        if (const auto now = is.find(before[i].id); now == is.end())
            changes.push_back({.order = i, .before = before[i], .after = {}});
        else if (after[now->second] != before[i])
            changes.push_back({.order = i, .before = before[i], .after = after[now->second]});
    for (std::size_t i = 0; i < after.size(); ++i)
        if (!was.contains(after[i].id))
            changes.push_back({.order = before.size() + i, .before = {}, .after = after[i]});
    return changes;
}

}  // namespace

DrawingChange changeBetween(const Document& before, const Document& after) {
    DrawingChange change{.entities = changesBetween<EntityChange>(before.entities, after.entities),
                         .constraints = changesBetween<ConstraintChange>(before.constraints, after.constraints)};
    if (before.parameters != after.parameters)
        change.parameters = ParametersChange{before.parameters, after.parameters};
    return change;
}

std::string reportPage(FateReport report, std::span<const EditResult> results, std::span<const DrawingChange> changes) {
    const FateReport whole = completed(std::move(report));
    const std::string json = StepsText(whole, results, changes).text();
    const std::string script = bundled("steps.js");
    return writeHtmlReport(whole,
                           {.style = textOfAsset("steps.css"), .data = heldJson("steps-data", json), .script = script});
}

}  // namespace holdfast::window
