#pragma once

#include <optional>
#include <string>

#include "solver/src/api/SketchImpl.h"

namespace holdfast::solver {

/// What a constraint is to the solver, or an id in it that the sketch does not have, or a number that is none.
Result<detail::SketchConstraint> readConstraint(const SketchImpl& sketch, const Constraint& constraint);

/// Why the solver cannot have a constraint of its sketch with such a value; nothing when it can.
std::optional<Error> faultOfEquations(const SketchImpl& sketch, int number, const Constraint& constraint, double value);

/// "radius of e3", "distance of the start of e1, the end of e2".
std::string describe(const Constraint& constraint);

/// What the kind takes, in words.
std::string_view takenBy(const Constraint& constraint);

/// The number of a dimension that can have this value, or why it cannot.
Result<int> dimensionFor(const SketchImpl& sketch, ConstraintId dimension, double value);

/// Throws nothing.
void giveValue(SketchImpl& sketch, int dimension, double value);

/// The value of a dimension; null for other kinds.
Value* valueIn(Constraint& constraint);

}  // namespace holdfast::solver
