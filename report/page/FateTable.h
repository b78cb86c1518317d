#pragma once

#include <cstddef>
#include <string>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

struct TableStyle {
    bool colours = false;   ///< fates in the terminal's colours; their words stay
    bool verbose = false;   ///< every constraint and entity, also those that stayed as they were
    std::size_t width = 0;  ///< columns of the terminal: reasons are wrapped to fit; 0: lines as long as they are
    std::size_t fold = 20;  ///< without verbose: most rows of one fate, the rest is counted
};

/// The report as a table for a terminal, most important fates first, closed by a line of totals. Control characters in
/// names and texts become U+FFFD, so that a drawing cannot steer the terminal.
std::string writeFateTable(FateReport report, const TableStyle& style = {});

/// The totals alone, without a line end: "2 deleted, 1 re-pointed, 40 kept; 1 entity edited, ...".
std::string fateSummary(FateReport report);

}  // namespace holdfast::report
