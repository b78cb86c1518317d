#pragma once

#include <string>

#include "solver/src/api/SketchImpl.h"

namespace holdfast::solver {

/// What a constraint is to the solver, or an id in it that the sketch does not have, or a number that is none.
Result<detail::SketchConstraint> readConstraint(const SketchImpl& sketch, const Constraint& constraint);

/// "radius of e3", "distance of the start of e1, the end of e2".
std::string describe(const Constraint& constraint);

/// What the kind takes, in words.
std::string_view takenBy(const Constraint& constraint);

/// The number of a dimension; null for other kinds.
Value* valueIn(Constraint& constraint);

}  // namespace holdfast::solver
