#pragma once

#include <optional>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "editing/commands/fillet/FilletGeometry.h"

namespace holdfast::editing {

/// Where two curves have their corner: in a common end, or where straight lines cross or would cross. EditError for
/// curves without one.
Vec2 cornerOf(const FilletSide& a, const FilletSide& b);

/// Leaves a construction point at a corner that a fillet has rounded. Nothing without a corner.
void keepCorner(EditContext& context, const std::optional<Vec2>& corner);

}  // namespace holdfast::editing
