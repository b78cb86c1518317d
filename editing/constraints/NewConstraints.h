#pragma once

#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// Adds those of some constraints, under fresh ids, that can hold between their places, hold as drawn, and of which
/// nothing follows already; of two that say the same the earlier one. Nothing moves. Cost: a few diagnoses of all
/// that hangs together with their entities.
void addNew(Drawing& drawing, std::vector<Constraint> wanted);

}  // namespace holdfast::editing
