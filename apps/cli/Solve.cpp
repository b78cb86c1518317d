#include <nlohmann/json.hpp>

#include <iostream>

#include "apps/cli/Commands.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/telling/Progress.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "apps/window/ReportPage.h"
#include "document/formulas/Calculation.h"
#include "document/text/DrawingError.h"
#include "editing/Refusal.h"
#include "editing/fates/Fates.h"
#include "hosting/DocumentSketch.h"
#include "report/page/Wording.h"

namespace holdfast::cli {

namespace {

/// What a solve and a diagnosis have found, with the drawing, to tell it in the drawing's names.
struct Findings {
    std::string name;
    const Document& document;
    DocumentDiagnosis diagnosis;
    DocumentSolution result;

    const Constraint& constraint(std::size_t number) const { return document.constraints[number]; }
    const std::string& entity(std::size_t number) const { return document.entities[number].id; }

    std::vector<std::string> ids(const std::vector<std::size_t>& constraints) const {
        std::vector<std::string> found;
        found.reserve(constraints.size());
        for (const std::size_t number : constraints)
            found.push_back(constraint(number).id);
        return found;
    }
    std::string words(const std::vector<std::size_t>& constraints) const {
        std::string list;
        for (const std::size_t number : constraints)
            list += (list.empty() ? "" : ", ") + spokenConstraint(constraint(number));
        return list;
    }
};

/// The diagnosis names the conflicts, each once; the solve refused for the first of them.
Findings findingsOf(const std::string& name, const Document& document, const DocumentSketch& sketch,
                    DocumentSolution solution) {
    Findings found{name, document, sketch.diagnose(), std::move(solution)};
    if (!found.result.isSolved() && !found.diagnosis.conflicts.empty()) {
        found.result.conflicting = found.diagnosis.conflicts.front();
        if (found.result.ending == Ending::unreached)
            found.result.ending = Ending::conflicting;
    }
    return found;
}

void tellFreedom(const Findings& found) {
    std::cout << "degrees of freedom: " << found.diagnosis.freedom << '\n';
}

void tellParts(const Findings& found) {
    std::size_t fixedParts = 0;
    for (const DocumentDiagnosis::Part& part : found.diagnosis.parts) {
        if (part.freedom == 0)
            ++fixedParts;
        else
            std::cout << "  part of " << part.entities.size() << (part.entities.size() == 1 ? " entity" : " entities")
                      << " around " << found.entity(part.entities.front()) << ": " << part.freedom << '\n';
    }
    if (fixedParts > 0)
        std::cout << "  " << fixedParts << (fixedParts == 1 ? " part is" : " parts are") << " fully determined\n";
}

void tellRedundant(const Findings& found) {
    for (const DocumentDiagnosis::Redundancy& redundancy : found.diagnosis.redundant)
        std::cout << "redundant, harmless: " << spokenConstraint(found.constraint(redundancy.constraint))
                  << (redundancy.isWhole ? "" : ", in part") << '\n';
    for (const std::vector<std::size_t>& conflict : found.diagnosis.conflicts)
        std::cout << "cannot hold together: " << found.words(conflict) << '\n';
}

void tellReached(const Findings& found) {
    if (found.result.followed <= 0.0)
        return;
    for (const LedDimension& led : found.result.led)
        std::cout << "  " << led.id << " could be led from " << shortNumber(led.from) << " to " << shortNumber(led.to)
                  << '\n';
}

/// Why there is no solution, as far as it is known: "c7 (...), c9 (...) cannot hold together". Where nothing is known,
/// how near it came.
std::string reasonOf(const Findings& found) {
    const DocumentSolution& result = found.result;
    if (!result.conflicting.empty())
        return found.words(result.conflicting) + " cannot hold together";
    if (!result.complaint.empty() || !result.worst)
        return result.complaint;
    return "no solution was found; where the search ended, " + spokenConstraint(found.constraint(*result.worst)) +
           " was off by " + shortNumber(result.residual);
}

void tellResult(const Findings& found) {
    const DocumentSolution& result = found.result;
    if (!result.isSolved()) {
        const std::string reason = reasonOf(found);
        std::cout << "not solved, nothing was changed" << (reason.empty() ? "" : ": ") << reason << '\n';
        tellReached(found);
        return;
    }
    std::cout << (result.ending == Ending::unchanged
                      ? "everything holds as it is"
                      : "solved in " + std::to_string(result.iterations) + " iterations");
    if (result.worst && result.residual > 0.0)
        std::cout << "; worst is " << spokenConstraint(found.constraint(*result.worst)) << ", off by "
                  << shortNumber(result.residual);
    std::cout << '\n';
    for (const auto& [entity, distance] : result.movements)
        std::cout << "  " << found.entity(entity) << " moved by " << shortNumber(distance) << '\n';
}

const char* endingWord(Ending ending) {
    switch (ending) {
        case Ending::unchanged:
            return "unchanged";
        case Ending::solved:
            return "solved";
        case Ending::conflicting:
            return "conflicting";
        case Ending::degenerate:
            return "degenerate";
        default:
            return "unreached";
    }
}

nlohmann::ordered_json jsonOf(const Findings& found) {
    nlohmann::ordered_json json;
    json["drawing"] = found.name;
    json["status"] = endingWord(found.result.ending);
    json["degrees_of_freedom"] = found.diagnosis.freedom;
    json["iterations"] = found.result.iterations;
    json["worst_residual"] = found.result.residual;
    json["movements"] = nlohmann::ordered_json::array();
    for (const auto& [entity, distance] : found.result.movements)
        json["movements"].push_back({{"entity", found.entity(entity)}, {"distance", distance}});
    json["redundant"] = json["redundant_in_part"] = nlohmann::ordered_json::array();
    for (const DocumentDiagnosis::Redundancy& redundancy : found.diagnosis.redundant)
        json[redundancy.isWhole ? "redundant" : "redundant_in_part"].push_back(
            found.constraint(redundancy.constraint).id);
    json["conflicts"] = nlohmann::ordered_json::array();
    for (const std::vector<std::size_t>& conflict : found.diagnosis.conflicts)
        json["conflicts"].push_back(found.ids(conflict));
    return json;
}

ErrorReport errorOf(const Findings& found, const std::string& drawing) {
    const std::string reason = reasonOf(found);
    return {.code = ErrorCode::notSolved,
            .message = found.name + ": not solved, nothing was changed" + (reason.empty() ? "" : ": ") + reason,
            .file = drawing,
            .constraints = found.ids(found.result.conflicting),
            .howFar = found.result.followed};
}

/// A solve changes what measured dimensions say, and with that what is calculated from them.
constexpr int kRounds = 8;

Document solved(const Findings& found, const DocumentSketch& sketch) {
    Document after = found.document;
    if (found.result.ending != Ending::solved)
        return after;
    sketch.writeTo(after);
    for (int round = 0; recalculate(after); ++round) {
        DocumentSketch next(after);
        if (round == kRounds || !next.solve({.keepsShapes = true, .namesConflicts = false}).isSolved())
            throw DrawingError(found.name,
                               {"", "formulas that change what they are calculated from, without coming to rest",
                                "formulas over dimensions that stay"});
        next.writeTo(after);
    }
    return after;
}

void addResults(const SolveOptions& options, const DrawingTarget& target, const Findings& found,
                const DocumentSketch& sketch, const DrawingFile& from, OutputFiles& outputs) {
    const Document after = solved(found, sketch);
    outputs.addDrawing(target, after, from);
    if (!options.report.empty()) {
        const EditResult result{.outcome = {"solve", {}}, .fates = fatesBetween(found.document, after, {}, 0)};
        FateReport report = runReport(found.document, after, {result.outcome}, {result.fates});
        report.solver = {found.diagnosis.freedom, found.result.iterations, found.result.residual};
        const DrawingChange change = window::changeBetween(found.document, after);
        outputs.add(options.report, window::reportPage(report, {&result, 1}, {&change, 1}));
    }
}

void tellFindings(const Findings& found, bool explains) {
    tellResult(found);
    tellFreedom(found);
    if (explains) {
        tellParts(found);
        tellRedundant(found);
    }
}

nlohmann::ordered_json findingsJson(const Findings& found, const std::string& drawing) {
    nlohmann::ordered_json json = jsonOf(found);
    if (!found.result.isSolved())
        json["error"] = errorJson(errorOf(found, drawing));
    return json;
}

DrawingTarget targetFor(const std::string& drawing, const SolveOptions& options) {
    const bool isSingle = options.drawings.size() == 1;
    return {isSingle ? options.output : outputIn(options.output, drawing, options.to), options.to};
}

int solveOne(const std::string& drawing, const SolveOptions& options, Teller& teller) {
    const DrawingTarget target = targetFor(drawing, options);
    OutputFiles outputs({drawingNamed(target), reportNamed(options.report)}, teller.wantsJson());
    const DrawingFile file = readDrawingFor(target, {drawing, options.from});
    const Document& before = file.document;
    const std::string name = spokenName(before, drawing);
    const Progress progress("solving " + name);
    DocumentSketch sketch(before);
    DocumentSolution solution = sketch.solve({.keepsShapes = true, .namesConflicts = false});
    const Findings found = findingsOf(name, before, sketch, std::move(solution));
    if (found.result.isSolved())
        addResults(options, target, found, sketch, file, outputs);
    else if (target.path == kStandardStream || options.report == kStandardStream)
        throw ReportedError(errorOf(found, drawing));  // what goes there is a drawing or nothing
    outputs.write([&] {
        if (teller.wantsJson())
            teller.tell(findingsJson(found, drawing));
        else
            tellFindings(found, options.explain);
    });
    return found.result.isSolved() ? kExitDone : exitOf(ErrorCode::notSolved);
}

}  // namespace

int solveDrawing(const SolveOptions& options) {
    refuseSharedNames(options.drawings, options.output, options.to);
    if (options.drawings.size() > 1 && !options.report.empty())
        throw UsageError("--report", "several drawings", "one drawing, as a report shows one");
    return tellEach(options.drawings, options.telling,
                    [&](const std::string& drawing, Teller& teller) { return solveOne(drawing, options, teller); });
}

}  // namespace holdfast::cli
