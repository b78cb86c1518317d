#pragma once

#include <string>
#include <vector>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {

/// Moves the entities that the user edits by a transform, as the platform's ALIGN does: what is tied to them follows,
/// the others stay. EditError when the constraints do not allow it, or let it come only near.
void alignBy(EditContext& context, const std::vector<std::string>& names, const PlaneTransform& transform);

}  // namespace holdfast::editing
