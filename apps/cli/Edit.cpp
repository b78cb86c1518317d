#include <iostream>

#include "apps/cli/Commands.h"
#include "apps/cli/DrawingFiles.h"
#include "apps/cli/EditRun.h"
#include "apps/cli/OutputFiles.h"
#include "apps/cli/Progress.h"
#include "apps/cli/Terminal.h"
#include "editing/text/EditText.h"
#include "hosting/DocumentSketch.h"
#include "report/page/BeforeAfter.h"
#include "report/page/FateTable.h"
#include "report/page/HtmlReport.h"
#include "report/page/ReportJson.h"

namespace holdfast::cli {

namespace {

/// An error that does not name its edit gets it in front, where there are several.
std::string refusalOf(const EditOptions& options, std::size_t edit, const std::string& error) {
    if (!options.places.empty())
        return options.places[edit] + error;
    return options.edits.size() == 1 || error.starts_with("edit \"") ? error : options.edits[edit] + ": " + error;
}

void applyAll(Session& session, const EditOptions& options) {
    Progress progress("edits", options.edits.size());
    for (std::size_t i = 0; i < options.edits.size(); ++i) {
        session.giveTies(!options.noTies && (options.ties.empty() || options.ties[i]));
        if (const EditResult& result = session.apply(options.edits[i]); !result.outcome.done())
            throw EditError(refusalOf(options, i, result.outcome.error));
        progress.step();
    }
}

void tell(const FateReport& report, bool json, bool verbose) {
    if (json)
        std::cout << writeReportJson(report) << '\n';
    else
        std::cout << writeFateTable(report, {.colours = wantsColours(), .verbose = verbose, .width = terminalWidth()});
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

int edit(const EditOptions& options) {
    OutputFiles outputs{drawingNamed(options.output), reportNamed(options.report), pictureNamed(options.picture)};
    DrawingFile file = readDrawingFor(options.output, options.drawing);
    Session session(std::move(file.document));
    applyAll(session, options);
    const FateReport report = reportOf(session);
    outputs.addDrawing(options.output, session.document(), file.dxf);
    if (!options.report.empty())
        outputs.add(options.report, writeHtmlReport(report));
    if (!options.picture.empty())
        outputs.add(options.picture, writeBeforeAfter(report, options.ids));
    outputs.write();
    tell(report, options.json, options.verbose);
    return kExitDone;
}

}  // namespace holdfast::cli
