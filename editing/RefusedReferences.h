#pragma once

#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// RefusedWord for the name of a block reference, or of a part of one, where an entity is wanted: what can be done with
/// it instead. Nothing happens for other names. Cost: the length of the name.
void refuseReference(const Drawing& drawing, const Name& name);

}  // namespace holdfast::editing
