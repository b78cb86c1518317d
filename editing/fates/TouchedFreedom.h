#pragma once

#include "document/DrawingChange.h"
#include "editing/Uses.h"
#include "editing/fates/FreedomChange.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// The degrees of freedom of the connected parts of a drawing that a change touches: the others keep theirs, and those
/// of a drawing are the sum over its parts. The drawing has made the change already, or not yet. Cost: the elimination
/// of the equations of these parts, before the change and after it.
FreedomChange freedomOfTouched(const Drawing& drawing, const DrawingChange& change, bool isMade);

}  // namespace holdfast::editing
