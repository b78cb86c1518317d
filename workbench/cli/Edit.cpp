#include <algorithm>
#include <iostream>
#include <sstream>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/FileIo.h"
#include "workbench/editing/EditText.h"
#include "workbench/editing/Session.h"
#include "workbench/report/FateTable.h"
#include "workbench/report/HtmlReport.h"
#include "workbench/report/ReportJson.h"

namespace holdfast {

namespace {

void applyAll(Session& session, const std::vector<std::string>& edits) {
    for (const std::string& edit : edits)
        if (const EditResult& result = session.apply(edit); !result.outcome.done())
            throw EditError(result.outcome.error);
}

void tell(const FateReport& report, bool json, bool verbose) {
    if (json)
        std::cout << writeReportJson(report) << '\n';
    else
        std::cout << writeFateTable(report, {.colours = wantsColours(), .verbose = verbose, .width = terminalWidth()});
}

/// The edits of a script, one a line; empty lines and what follows a # do not count. The first line names the drawing:
/// "open FILE", relative to the script.
struct Script {
    std::string drawing;
    std::vector<std::string> edits;
    std::string output;
};

Script readScript(const std::string& path) {
    Script script;
    std::string text = readFile(path), line;
    const std::string folder = path.substr(0, path.find_last_of('/') + 1);
    std::istringstream lines(text);
    for (int number = 1; std::getline(lines, line); ++number) {
        line.erase(std::min(line.find(" #"), line.size()));
        EditText words(line);
        if (words.atEnd() || words.peek().starts_with("#"))
            continue;
        if (words.accept("open"))
            script.drawing = folder + words.word("a drawing");
        else if (words.accept("save"))
            script.output = folder + words.word("a drawing");
        else
            script.edits.push_back(line);
        if (script.drawing.empty())
            throw EditError(path + ", line " + std::to_string(number) +
                            ": expected \"open DRAWING\" before the first edit");
    }
    if (script.drawing.empty())
        throw EditError(path + ": expected \"open DRAWING\" on the first line, found no line at all");
    return script;
}

}  // namespace

int edit(const EditOptions& options) {
    Session session(readAnyDrawing(options.drawing));
    applyAll(session, options.edits);
    const FateReport report = session.report();
    if (!options.output.empty())
        writeAnyDrawing(session.document(), options.output);
    if (!options.report.empty())
        writeFile(options.report, writeHtmlReport(report));
    tell(report, options.json, options.verbose);
    return kExitDone;
}

int run(const RunOptions& options) {
    const Script script = readScript(options.script);
    return edit({.drawing = script.drawing,
                 .edits = script.edits,
                 .output = script.output,
                 .report = options.report,
                 .json = options.json});
}

}  // namespace holdfast
