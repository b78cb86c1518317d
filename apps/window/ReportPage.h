#pragma once

#include <span>
#include <string>

#include "apps/window/Uses.h"
#include "document/DrawingChange.h"
#include "editing/Session.h"
#include "editing/fates/FateReport.h"

namespace holdfast::window {

/// The report as one page, whose pictures are the window's view where scripts run: a reader pans, zooms, points, and
/// steps through the edits one by one, before and after each. The changes are those of the results that were done, in
/// their order, from the report's drawing before to the one after. Cost: a diagnosis of each state of the drawing, but
/// of large ones of the first and the last alone, or none.
std::string reportPage(FateReport report, std::span<const EditResult> results, std::span<const DrawingChange> changes);

/// What makes one drawing of the other; both have the same block references.
DrawingChange changeBetween(const Document& before, const Document& after);

}  // namespace holdfast::window
