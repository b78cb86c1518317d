#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>

#include "apps/cli/Commands.h"
#include "apps/cli/DrawingFiles.h"
#include "apps/cli/EditRun.h"
#include "apps/cli/OutputFiles.h"
#include "apps/cli/Progress.h"
#include "apps/cli/Script.h"
#include "apps/cli/Terminal.h"
#include "editing/Session.h"
#include "editing/text/EditText.h"
#include "report/page/Wording.h"
#include "report/picture/Markup.h"

namespace holdfast::cli {

namespace {

/// What became of one drawing of a script.
struct Line {
    std::string drawing;
    std::size_t done = 0, edits = 0;
    FateReport report;
    std::string error;
};

Line runPart(const ScriptPart& part, bool noTies) {
    Line line;
    line.drawing = part.drawing.substr(part.drawing.find_last_of('/') + 1);
    line.edits = part.edits.size();
    try {
        OutputFiles outputs{drawingNamed(part.output)};
        DrawingFile file = readDrawingFor(part.output, part.drawing);
        Session session(std::move(file.document));
        for (; line.done < part.edits.size() && line.error.empty(); ++line.done) {
            session.giveTies(!noTies && part.ties[line.done]);
            const EditResult& result = session.apply(part.edits[line.done]);
            if (result.outcome.done())
                continue;
            line.error = "line " + std::to_string(part.lines[line.done]) + ", " + part.edits[line.done] + ": " +
                         result.outcome.error;
            break;
        }
        line.report = completed(reportOf(session));
        if (line.error.empty()) {
            outputs.addDrawing(part.output, session.document(), file.dxf);
            outputs.write();
        }
    } catch (const std::exception& error) {
        line.error = error.what();
    }
    return line;
}

/// What the table and the JSON tell of one drawing, or of all.
struct Totals {
    std::size_t done = 0, edits = 0;
    std::array<std::size_t, kConstraintFates.size()> constraints{};
    std::array<std::size_t, kEntityFates.size()> entities{};

    void add(const Line& line) {
        done += line.done;
        edits += line.edits;
        const auto moreConstraints = countFates(line.report.constraints);
        const auto moreEntities = countFates(line.report.entities);
        for (std::size_t i = 0; i < constraints.size(); ++i)
            constraints[i] += moreConstraints[i];
        for (std::size_t i = 0; i < entities.size(); ++i)
            entities[i] += moreEntities[i];
    }
    std::size_t of(ConstraintFate fate) const { return constraints[static_cast<std::size_t>(fate)]; }
    std::size_t of(EntityFate fate) const { return entities[static_cast<std::size_t>(fate)]; }
};

void tellRow(const std::string& name, int width, const Totals& totals) {
    std::cout << std::left << std::setw(width) << name << std::right << std::setw(8)
              << std::to_string(totals.done) + "/" + std::to_string(totals.edits) << std::setw(9)
              << totals.of(ConstraintFate::deleted) << std::setw(12) << totals.of(ConstraintFate::rePointed)
              << std::setw(7) << totals.of(ConstraintFate::kept) << std::setw(10) << totals.of(EntityFate::followed)
              << '\n';
}

void tellSummary(const std::vector<Line>& lines) {
    const std::string all = report::counted(lines.size(), "drawing");
    std::size_t width = all.size();
    for (const Line& line : lines)
        width = std::max(width, report::textLength(line.drawing));
    std::cout << std::left << std::setw(static_cast<int>(width) + 2) << "drawing" << std::right << std::setw(8)
              << "edits" << std::setw(9) << "deleted" << std::setw(12) << "re-pointed" << std::setw(7) << "kept"
              << std::setw(10) << "followed" << '\n';
    Totals sum;
    for (const Line& line : lines) {
        Totals own;
        own.add(line);
        sum.add(line);
        // setw counts bytes; the columns count characters.
        const std::size_t bytes = width + 2 + line.drawing.size() - report::textLength(line.drawing);
        tellRow(line.drawing, static_cast<int>(bytes), own);
        if (!line.error.empty())
            std::cout << "  refused: " << line.error << '\n';
    }
    tellRow(all, static_cast<int>(width) + 2, sum);
}

template <typename Fates>
nlohmann::ordered_json countsJson(const Fates& fates, const Totals& totals) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const auto fate : fates)
        json[std::string(fateName(fate))] = totals.of(fate);
    return json;
}

void tellJson(const std::vector<Line>& lines) {
    nlohmann::ordered_json json{{"drawings", nlohmann::ordered_json::array()}};
    for (const Line& line : lines) {
        Totals totals;
        totals.add(line);
        nlohmann::ordered_json own{{"drawing", line.drawing}, {"done", line.done}, {"edits", line.edits}};
        if (!line.error.empty())
            own["error"] = line.error;
        own["totals"] = {{"constraints", countsJson(kConstraintFates, totals)},
                         {"entities", countsJson(kEntityFates, totals)}};
        json["drawings"].push_back(std::move(own));
    }
    std::cout << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

int runSeveral(const std::vector<ScriptPart>& parts, const RunOptions& options) {
    std::vector<Line> lines;
    {
        Progress progress("drawings", parts.size());
        for (const ScriptPart& part : parts) {
            lines.push_back(runPart(part, options.noTies));
            progress.step();
        }
    }
    if (options.json)
        tellJson(lines);
    else
        tellSummary(lines);
    const bool isWhole = std::all_of(lines.begin(), lines.end(), [](const Line& line) { return line.error.empty(); });
    return isWhole ? kExitDone : kExitBadInput;
}

}  // namespace

int run(const RunOptions& options) {
    const std::vector<ScriptPart> parts = readScript(options.script);
    if (parts.size() > 1) {
        if (options.report.empty() && options.picture.empty())
            return runSeveral(parts, options);
        throw EditError(options.script + " opens " + std::to_string(parts.size()) +
                        " drawings; --report and --picture show one drawing, so give each its own script");
    }
    const ScriptPart& part = parts.front();
    EditOptions edits{.drawing = part.drawing,
                      .edits = part.edits,
                      .output = part.output,
                      .report = options.report,
                      .picture = options.picture,
                      .json = options.json,
                      .verbose = options.verbose,
                      .noTies = options.noTies,
                      .ties = part.ties,
                      .ids = options.ids};
    for (const int line : part.lines)
        edits.places.push_back(scriptPlace(options.script, line));
    return edit(edits);
}

}  // namespace holdfast::cli
