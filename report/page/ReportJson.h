#pragma once

#include <string>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

/// The report for programs: one JSON object with `edits`, `constraints`, `entities`, `totals` and, where known,
/// `solver`. The drawings themselves are left out, they have files of their own. Places are written as in drawing
/// files; numbers that are not finite become null; text that is no UTF-8 gets U+FFFD. Ends with a line end.
std::string writeReportJson(FateReport report);

}  // namespace holdfast::report
