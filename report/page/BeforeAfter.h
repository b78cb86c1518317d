#pragma once

#include <string>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

/// One picture of the drawings before and after the edits, side by side in the same frame, with the marks of what went,
/// what moved on and what came. Complete in itself, like every picture. With the names of
/// entities beside them if they are wanted.
std::string writeBeforeAfter(FateReport report, bool names = false);

}  // namespace holdfast::report
