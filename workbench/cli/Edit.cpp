#include <iostream>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/EditRun.h"
#include "workbench/cli/OutputFiles.h"
#include "workbench/cli/Progress.h"
#include "workbench/cli/Terminal.h"
#include "workbench/editing/EditText.h"
#include "workbench/evaluator/Diagnose.h"
#include "workbench/evaluator/FigureFromDocument.h"
#include "workbench/report/BeforeAfter.h"
#include "workbench/report/FateTable.h"
#include "workbench/report/HtmlReport.h"
#include "workbench/report/ReportJson.h"

namespace holdfast {

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
        const Diagnosis diagnosis = diagnose(figureFrom(session.document()));
        report.solver = {.degreesOfFreedom = diagnosis.freedom, .iterations = {}, .worstResidual = diagnosis.worstMiss};
    } catch (const FigureError&) {
        report.solver.reset();  // a drawing that the solver cannot read can still be cut
    }
    return report;
}

int edit(const EditOptions& options) {
    OutputFiles outputs{drawingNamed(options.output), reportNamed(options.report), pictureNamed(options.picture)};
    Session session(readAnyDrawing(options.drawing));
    applyAll(session, options);
    const FateReport report = reportOf(session);
    outputs.addDrawing(options.output, session.document());
    if (!options.report.empty())
        outputs.add(options.report, writeHtmlReport(report));
    if (!options.picture.empty())
        outputs.add(options.picture, writeBeforeAfter(report));
    outputs.write();
    tell(report, options.json, options.verbose);
    return kExitDone;
}

}  // namespace holdfast
