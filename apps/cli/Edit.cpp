#include <algorithm>
#include <iostream>

#include "apps/cli/Commands.h"
#include "apps/cli/EditRun.h"
#include "apps/cli/batch/Script.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Progress.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "apps/window/ReportPage.h"
#include "editing/text/EditText.h"
#include "hosting/DocumentSketch.h"
#include "report/page/BeforeAfter.h"
#include "report/page/FateTable.h"
#include "report/page/ReportObject.h"

namespace holdfast::cli {

namespace {

/// An error that does not name its edit gets it in front, where there are several.
std::string refusalOf(const EditOptions& options, std::size_t edit, const std::string& error) {
    if (!options.script.empty())
        return scriptPlace(options.script, options.lines[edit]) + error;
    return options.edits.size() == 1 || error.starts_with("edit \"") ? error : options.edits[edit] + ": " + error;
}

/// What each edit has changed, where there is to be a page that steps through them.
std::vector<DrawingChange> applyAll(Session& session, const EditOptions& options) {
    std::vector<DrawingChange> changes;
    Progress progress("edits", options.edits.size());
    for (std::size_t i = 0; i < options.edits.size(); ++i) {
        session.giveTies(!options.noTies && (options.ties.empty() || options.ties[i]));
        if (const EditResult& result = session.apply(options.edits[i]); !result.outcome.done()) {
            ErrorReport report = reportOf(result, i);
            report.message = refusalOf(options, i, result.outcome.error);
            report.file = options.script.empty() ? options.drawing.path : options.script;
            report.line = options.script.empty() ? 0 : options.lines[i];
            throw ReportedError(std::move(report));
        }
        if (!options.report.empty())
            changes.push_back(session.changes().back());
        progress.step();
    }
    return changes;
}

void tell(const FateReport& report, const EditOptions& options, Teller& teller) {
    if (teller.wantsJson())
        teller.tell(reportJson(report));
    else
        std::cout << writeFateTable(report,
                                    {.colours = wantsColours(), .verbose = options.verbose, .width = terminalWidth()});
}

/// Where the drawing takes standard output, what a user should know goes the other way.
void tellRemarks(const FateReport& report) {
    for (const EditOutcome& edit : report.edits)
        for (const std::string& remark : edit.remarks)
            complain(edit.text + ": " + remark);
}

/// No edit is one word that ends as the file of a drawing does.
void refuseDrawings(const EditOptions& options) {
    const std::vector<std::string_view> endings = drawingNamed({}).endings;
    for (const std::string& edit : options.edits)
        if (edit.find(' ') == std::string::npos &&
            std::find(endings.begin(), endings.end(), endingOf(edit)) != endings.end())
            throw UsageError(edit, "a second drawing", "one drawing; \"holdfast run\" edits several, with -j at once");
}

int editOne(const EditOptions& options, Teller& teller) {
    if (options.script.empty())
        refuseDrawings(options);
    OutputFiles outputs({drawingNamed(options.output), reportNamed(options.report), pictureNamed(options.picture)},
                        teller.wantsJson());
    DrawingFile file = readDrawingFor(options.output, options.drawing);
    Session session(std::move(file.document));
    const std::vector<DrawingChange> changes = applyAll(session, options);
    const FateReport report = reportOf(session);
    outputs.addDrawing(options.output, session.document(), file);
    if (!options.report.empty())
        outputs.add(options.report, window::reportPage(report, session.results(), changes));
    if (!options.picture.empty())
        outputs.addPicture(options.picture, writeBeforeAfter(report, options.ids), session.document().name);
    if (!outputs.write([&] { tell(report, options, teller); }))
        tellRemarks(report);
    return kExitDone;
}

}  // namespace

FateReport reportOf(const Session& session) {
    FateReport report = session.report();
    try {
        const DocumentDiagnosis diagnosis = DocumentSketch(session.document()).diagnose();
        report.solver = {
            .degreesOfFreedom = diagnosis.freedom, .iterations = {}, .worstResidual = diagnosis.worstResidual};
    } catch (const UnsolvableDocument&) {
        report.solver.reset();  // a drawing that the solver cannot read can still be cut
    }
    return report;
}

ErrorReport reportOf(const EditResult& refused, std::size_t edit) {
    const RefusalFacts facts = refused.refusal.value_or(RefusalFacts{});
    return {.code = codeFor(facts.cause),
            .message = refused.outcome.error,
            .edit = edit,
            .column = facts.column,
            .constraints = facts.constraints,
            .howFar = facts.followed};
}

int edit(const EditOptions& options) {
    return tellEach({options.drawing.path}, options.telling,
                    [&](const std::string&, Teller& teller) { return editOne(options, teller); });
}

}  // namespace holdfast::cli
