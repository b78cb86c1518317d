#pragma once

#include <string>

#include "report/Uses.h"
#include "report/page/ReportIndex.h"

namespace holdfast::report {

/// The class by which styles and filters know a fate; the same as that of its marks in the pictures.
/// The style of a fate: what is restored looks like what is new.
std::string_view fateClass(ConstraintFate fate);
std::string_view fateClass(EntityFate fate);

/// A small sign for a fate, told apart by its form as well as its colour.
std::string fateIcon(std::string_view fateClass);

/// A drawing too large to be drawn and listed with an element for each thing in it.
bool isCrowd(const FateReport& report);

/// The table of constraints: what was deleted first; what was kept behind a fold when it is long. Of a crowd what
/// was kept is a line each, and so is what comes after some thousand rows.
std::string constraintSection(const FateReport& report, const ReportIndex& index);

/// The table of entities that the edits touched, and the list of those that they did not.
std::string entitySection(const FateReport& report, const ReportIndex& index);

/// The table of parameters; empty for a drawing without any.
std::string parameterSection(const FateReport& report);

}  // namespace holdfast::report
