#pragma once

#include <string>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

/// One page that tells the whole report: the edits, before and after side by side, the fate of every constraint and
/// entity. It needs no other file and no network, works without scripts (those add pan, zoom and highlighting), prints,
/// and follows the reader's choice of light or dark. The text is well-formed XML as well as HTML.
/// Where both drawings are the same there is one picture.
std::string writeHtmlReport(FateReport report);

}  // namespace holdfast::report
