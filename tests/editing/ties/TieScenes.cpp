#include "tests/editing/ties/TieScenes.h"

#include <map>
#include <stdexcept>
#include <vector>

#include "document/Names.h"
#include "editing/fates/Freedom.h"
#include "host/model/HostAudit.h"
#include "hosting/DocumentSketch.h"
#include "hosting/Drawing.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {

namespace {

std::vector<std::string> partedBy(char mark, std::string_view text) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(mark), text.size());
        const std::size_t first = text.find_first_not_of(" \n");
        if (first < end)
            parts.emplace_back(text.substr(first, end - first));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

/// "point_on_curve g3.end g7"
std::string textOf(const Constraint& constraint) {
    std::string text(typeName(constraint.type));
    for (const Place& place : constraint.refs)
        text += " " + spokenPlace(place);
    return text;
}

/// One word for each constraint that is said more than once, of the whole or a part.
std::size_t redundanciesOf(const Document& document) {
    return DocumentSketch(document).diagnose().redundant.size();
}

std::string differences(const Document& bare, const Document& tied) {
    if (withoutVertexNumbers(bare).entities != withoutVertexNumbers(tied).entities)
        return "the ties have moved something";
    const std::size_t spare = redundanciesOf(tied), spareBefore = redundanciesOf(bare);
    if (spare > spareBefore)
        return std::to_string(spare - spareBefore) + " redundant ties";
    if (degreesOfFreedom(tied).value_or(0) > degreesOfFreedom(bare).value_or(0))
        return "there is more freedom with ties than without";
    const std::vector<double> misses = DocumentSketch(tied).shortfalls();
    for (std::size_t i = 0; i < tied.constraints.size(); ++i)
        if (misses[i] > 1e-9 * DocumentSketch(tied).size())
            return tied.constraints[i].id + " does not hold";
    return {};
}

}  // namespace

Document drawnBy(std::string_view edits) {
    Session session(Document{});
    for (const std::string& edit : partedBy(';', edits))
        if (const EditResult& result = session.apply(edit); !result.outcome.done())
            throw std::invalid_argument(edit + ": " + result.outcome.error);
    return session.document();
}

std::string outcomeOf(const Document& document, std::string_view edit) {
    Session session(document);
    const EditResult& result = session.apply(edit);
    if (!result.outcome.done())
        return result.outcome.error;
    const FateReport report = completed(session.report());
    std::map<ConstraintFate, std::string> found;
    for (const ConstraintOutcome& outcome : report.constraints) {
        std::string& text = found[outcome.fate];
        const bool isNamed = outcome.fate == ConstraintFate::kept || outcome.fate == ConstraintFate::deleted;
        if (isNamed)
            text += " " + outcome.constraint;
        else
            text += (text.empty() ? " " : ", ") +
                    (outcome.fate == ConstraintFate::rePointed ? outcome.constraint + " " : "") +
                    textOf(constraintNamed(report.after, outcome.constraint));
    }
    std::string text;
    for (const ConstraintFate fate : {ConstraintFate::kept, ConstraintFate::rePointed, ConstraintFate::changed,
                                      ConstraintFate::added, ConstraintFate::deleted})
        if (const auto list = found.find(fate); list != found.end())
            text += (text.empty() ? "" : "; ") + std::string(fateName(fate)) + list->second;
    return text;
}

std::string faultOfTies(const Document& document, std::string_view edit) {
    Session bare(document), tied(document);
    bare.giveTies(false);
    if (!bare.apply(edit).outcome.done() || !tied.apply(edit).outcome.done())
        return "the edit was refused: " + tied.results().back().outcome.error;
    if (std::string fault = differences(bare.document(), tied.document()); !fault.empty())
        return fault;
    for (const std::string& finding : auditHost(tied.drawing().process()))
        return finding;
    tied.apply("undo");
    if (withoutVertexNumbers(tied.document()) != withoutVertexNumbers(document))
        return "undo does not bring the drawing back";
    tied.apply("redo");
    return differences(bare.document(), tied.document());
}

}  // namespace holdfast::editing
