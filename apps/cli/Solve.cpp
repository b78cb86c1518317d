#include <nlohmann/json.hpp>

#include <iostream>

#include "apps/cli/Commands.h"
#include "apps/cli/DrawingFiles.h"
#include "apps/cli/OutputFiles.h"
#include "apps/cli/Progress.h"
#include "apps/cli/Terminal.h"
#include "editing/Refusal.h"
#include "editing/fates/Fates.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "report/page/HtmlReport.h"
#include "solver/src/diagnosis/Diagnose.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::cli {

namespace {

/// A sketch with its drawing, to tell its findings in the drawing's names.
struct Findings {
    std::string name;
    const Document& document;
    const SketchData& sketch;
    Diagnosis diagnosis;
    SolveResult result;

    const Constraint& constraint(int number) const { return document.constraints[static_cast<std::size_t>(number)]; }
    const std::string& entity(int number) const { return document.entities[static_cast<std::size_t>(number)].id; }

    std::vector<std::string> ids(const std::vector<int>& constraints) const {
        std::vector<std::string> found;
        found.reserve(constraints.size());
        for (const int number : constraints)
            found.push_back(constraint(number).id);
        return found;
    }
    std::string words(const std::vector<int>& constraints) const {
        std::string list;
        for (const int number : constraints)
            list += (list.empty() ? "" : ", ") + spokenConstraint(constraint(number));
        return list;
    }
};

/// The diagnosis names the conflicts, each once; the solve refused for the first of them.
Findings findingsOf(const std::string& name, const Document& document, const SketchData& sketch, SolveResult result) {
    Findings found{name, document, sketch, diagnose(sketch), std::move(result)};
    if (!found.result.isSolved() && !found.diagnosis.conflicts.empty()) {
        found.result.conflicting = found.diagnosis.conflicts.front();
        if (found.result.status == SolveStatus::unreached)
            found.result.status = SolveStatus::conflicting;
    }
    return found;
}

void tellFreedom(const Findings& found) {
    std::cout << "degrees of freedom: " << found.diagnosis.freedom << '\n';
}

void tellParts(const Findings& found) {
    std::size_t fixedParts = 0;
    for (const SketchPart& part : found.diagnosis.parts) {
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
    for (const Redundancy& redundancy : found.diagnosis.redundant)
        std::cout << "redundant, harmless: " << spokenConstraint(found.constraint(redundancy.constraint))
                  << (redundancy.isWhole ? "" : ", in part") << '\n';
    for (const std::vector<int>& conflict : found.diagnosis.conflicts)
        std::cout << "cannot hold together: " << found.words(conflict) << '\n';
}

void tellReached(const Findings& found) {
    const SolveResult& result = found.result;
    if (!result.reached || result.reached->part <= 0.0)
        return;
    for (std::size_t i = 0; i < result.reached->dimensions.size(); ++i) {
        const ValueGoal& last = result.reached->dimensions[i];
        std::cout << "  " << found.constraint(last.constraint).id << " could be led from "
                  << shortNumber(result.reached->from[i]) << " to " << shortNumber(last.goal) << '\n';
    }
}

void tellResult(const Findings& found) {
    const SolveResult& result = found.result;
    if (!result.isSolved()) {
        std::cout << "not solved, nothing was changed";
        if (!result.conflicting.empty())
            std::cout << ": " << found.words(result.conflicting) << " cannot hold together";
        else if (result.degeneracy)
            std::cout << ": " << result.degeneracy->what;
        std::cout << '\n';
        tellReached(found);
        return;
    }
    std::cout << (result.status == SolveStatus::unchanged
                      ? "everything holds as it is"
                      : "solved in " + std::to_string(result.iterations) + " iterations");
    if (result.worstConstraint >= 0 && result.residual > 0.0)
        std::cout << "; worst is " << spokenConstraint(found.constraint(result.worstConstraint)) << ", off by "
                  << shortNumber(result.residual);
    std::cout << '\n';
    for (const Movement& movement : result.movements)
        std::cout << "  " << found.entity(movement.entity) << " moved by " << shortNumber(movement.distance) << '\n';
}

const char* statusWord(SolveStatus status) {
    switch (status) {
        case SolveStatus::unchanged:
            return "unchanged";
        case SolveStatus::solved:
            return "solved";
        case SolveStatus::conflicting:
            return "conflicting";
        case SolveStatus::degenerate:
            return "degenerate";
        case SolveStatus::unreached:
            return "unreached";
    }
    return "";
}

nlohmann::ordered_json jsonOf(const Findings& found) {
    nlohmann::ordered_json json;
    json["drawing"] = found.name;
    json["status"] = statusWord(found.result.status);
    json["degrees_of_freedom"] = found.diagnosis.freedom;
    json["iterations"] = found.result.iterations;
    json["worst_residual"] = found.result.residual;
    json["movements"] = nlohmann::ordered_json::array();
    for (const Movement& movement : found.result.movements)
        json["movements"].push_back({{"entity", found.entity(movement.entity)}, {"distance", movement.distance}});
    json["redundant"] = json["redundant_in_part"] = nlohmann::ordered_json::array();
    for (const Redundancy& redundancy : found.diagnosis.redundant)
        json[redundancy.isWhole ? "redundant" : "redundant_in_part"].push_back(
            found.constraint(redundancy.constraint).id);
    json["conflicts"] = nlohmann::ordered_json::array();
    for (const std::vector<int>& conflict : found.diagnosis.conflicts)
        json["conflicts"].push_back(found.ids(conflict));
    return json;
}

void writeResults(const SolveOptions& options, const Findings& found, const SketchData& sketch, OutputFiles& outputs) {
    Document after = found.document;
    if (found.result.status == SolveStatus::solved)
        applySketch(sketch, after);
    outputs.addDrawing(options.output, after);
    if (!options.report.empty()) {
        Fates fates = fatesBetween(found.document, after, {}, 0);
        FateReport report = runReport(found.document, after, {EditOutcome{"solve", {}}}, {fates});
        report.solver = {found.diagnosis.freedom, found.result.iterations, found.result.residual};
        outputs.add(options.report, writeHtmlReport(report));
    }
    outputs.write();
}

}  // namespace

int solveDrawing(const SolveOptions& options) {
    OutputFiles outputs{drawingNamed(options.output), reportNamed(options.report)};
    const Document before = readAnyDrawing(options.drawing);
    const std::string name = spokenName(before, options.drawing);
    const Progress progress("solving " + name);
    SketchData sketch = sketchFrom(before);
    SolveResult result = solve(sketch, {.keepsShapes = true, .namesConflicts = false});
    const Findings found = findingsOf(name, before, sketch, std::move(result));
    if (found.result.isSolved())
        writeResults(options, found, sketch, outputs);
    if (options.json) {
        std::cout << jsonOf(found).dump(2) << '\n';
    } else {
        tellResult(found);
        tellFreedom(found);
        if (options.explain) {
            tellParts(found);
            tellRedundant(found);
        }
    }
    return found.result.isSolved() ? kExitDone : kExitUnsolved;
}

}  // namespace holdfast::cli
