#pragma once

#include <string>
#include <vector>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {

/// EditError that names the fixed constraints on these entities from whose places the transform would take them away.
/// A line that slides along itself and a circle that turns about its centre stay in place. Linear in the drawing.
void refuseMovingFixed(const EditContext& context, const std::vector<std::string>& names,
                       const PlaneTransform& transform);

}  // namespace holdfast::editing
