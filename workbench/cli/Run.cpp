#include <algorithm>
#include <iomanip>
#include <iostream>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/EditRun.h"
#include "workbench/cli/OutputFiles.h"
#include "workbench/cli/Progress.h"
#include "workbench/cli/Script.h"
#include "workbench/cli/Terminal.h"
#include "workbench/editing/EditText.h"
#include "workbench/editing/Session.h"

namespace holdfast {

namespace {

/// What became of one drawing of a script.
struct Line {
    std::string drawing;
    std::size_t done = 0, edits = 0;
    FateReport report;
    std::string error;
};

Line runPart(const ScriptPart& part) {
    Line line;
    line.drawing = part.drawing.substr(part.drawing.find_last_of('/') + 1);
    line.edits = part.edits.size();
    try {
        Session session(readAnyDrawing(part.drawing));
        for (const std::string& edit : part.edits) {
            const EditResult& result = session.apply(edit);
            if (!result.outcome.done()) {
                line.error = edit + ": " + result.outcome.error;
                break;
            }
            ++line.done;
        }
        line.report = reportOf(session);
        if (line.error.empty()) {
            OutputFiles outputs{drawingNamed(part.output)};
            outputs.addDrawing(part.output, session.document());
            outputs.write();
        }
    } catch (const std::exception& error) {
        line.error = error.what();
    }
    return line;
}

void tellSummary(const std::vector<Line>& lines) {
    std::size_t width = 7;
    for (const Line& line : lines)
        width = std::max(width, line.drawing.size());
    const int name = static_cast<int>(width) + 2;
    std::cout << std::left << std::setw(name) << "drawing" << std::right << std::setw(8) << "edits" << std::setw(9)
              << "deleted" << std::setw(12) << "re-pointed" << std::setw(7) << "kept" << std::setw(10) << "followed"
              << '\n';
    for (const Line& line : lines) {
        const FateReport whole = completed(line.report);
        const auto constraints = countFates(whole.constraints);
        const auto entities = countFates(whole.entities);
        const auto of = [](const auto& counts, auto fate) { return counts[static_cast<std::size_t>(fate)]; };
        std::cout << std::left << std::setw(name) << line.drawing << std::right << std::setw(8)
                  << std::to_string(line.done) + "/" + std::to_string(line.edits) << std::setw(9)
                  << of(constraints, ConstraintFate::deleted) << std::setw(12)
                  << of(constraints, ConstraintFate::rePointed) << std::setw(7) << of(constraints, ConstraintFate::kept)
                  << std::setw(10) << of(entities, EntityFate::followed) << '\n';
        if (!line.error.empty())
            std::cout << "  refused: " << line.error << '\n';
    }
}

int runSeveral(const std::vector<ScriptPart>& parts) {
    std::vector<Line> lines;
    {
        Progress progress("drawings", parts.size());
        for (const ScriptPart& part : parts) {
            lines.push_back(runPart(part));
            progress.step();
        }
    }
    tellSummary(lines);
    const bool isWhole = std::all_of(lines.begin(), lines.end(), [](const Line& line) { return line.error.empty(); });
    return isWhole ? kExitDone : kExitBadInput;
}

}  // namespace

int run(const RunOptions& options) {
    const std::vector<ScriptPart> parts = readScript(options.script);
    if (parts.size() == 1)
        return edit({.drawing = parts.front().drawing,
                     .edits = parts.front().edits,
                     .output = parts.front().output,
                     .report = options.report,
                     .picture = options.picture,
                     .json = options.json,
                     .verbose = options.verbose});
    if (options.json || !options.report.empty() || !options.picture.empty())
        throw EditError(options.script + " opens " + std::to_string(parts.size()) +
                        " drawings; --report, --picture and --json tell of one drawing, so give each its own script");
    return runSeveral(parts);
}

}  // namespace holdfast
