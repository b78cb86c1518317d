#pragma once

#include <optional>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// One of the two halves of a constraint of two equations: of a collinearity a point on the line and a parallel, of a
/// common point or centre a horizontal and a vertical. Nothing when it is of another kind.
std::optional<Constraint> halfOf(const Constraint& whole, bool first);

}  // namespace holdfast::editing
