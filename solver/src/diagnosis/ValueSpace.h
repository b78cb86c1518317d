#pragma once

#include <map>

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

/// How many equations of each constraint asked about others imply, with nothing merged: rules of entities come first,
/// then constraints in their order, tangencies last. What was merged stands in its plain equations, what was not in
/// those of the merged system, which see shared points. Cost: that of an elimination in all values of the sketch.
std::map<int, int> sparesInValues(const SketchData& sketch, const EquationSystem& merged, const EquationSystem& plain,
                                  const std::vector<char>& isAsked);

}  // namespace holdfast::solver::detail
