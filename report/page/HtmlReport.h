#pragma once

#include <string>
#include <string_view>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

/// One page that tells the whole report: the edits, before and after side by side, the fate of every constraint and
/// entity. It needs no other file and no network, works without scripts (those add pan, zoom and highlighting), prints,
/// and follows the reader's choice of light or dark. The text is well-formed XML as well as HTML.
/// Where both drawings are the same there is one picture. Drawings of more than some thousand entities and constraints
/// are drawn and listed in fewer elements: what no edit has touched has no marks there, and a line each instead of a
/// row.
std::string writeHtmlReport(FateReport report);

/// What takes the place of the page's own script: it shows the drawing in a view of its own where scripts run, and
/// finds what it shows in an element of the page.
struct LiveView {
    std::string_view style;   ///< after the page's own
    std::string data;         ///< the element
    std::string_view script;  ///< a module
};
/// The report has been completed.
std::string writeHtmlReport(const FateReport& whole, const LiveView& view);

}  // namespace holdfast::report
