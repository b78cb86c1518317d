#pragma once

#include "holdfast/editing/fates/FateReport.h"

namespace holdfast::sketch {

// What edits did to constraints and entities.
using editing::ConstraintFate;
using editing::ConstraintOutcome;
using editing::EditOutcome;
using editing::EntityFate;
using editing::EntityOutcome;
using editing::fateName;
using editing::FateReport;
using editing::PlaceMove;
using editing::Shortfall;
using editing::SizeChange;
using editing::SizeKind;
using editing::sizeName;
using editing::SolverFigures;

}  // namespace holdfast::sketch
