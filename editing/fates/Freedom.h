#pragma once

#include <optional>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// How many numbers the constraints of a drawing leave to be chosen; nothing for a drawing that the solver cannot read.
/// Cost: the elimination of all its equations, by far more than a small edit takes.
std::optional<int> degreesOfFreedom(const Document& document);

}  // namespace holdfast::editing
