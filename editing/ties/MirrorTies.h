#pragma once

#include <vector>

#include "editing/Edit.h"
#include "editing/ties/Tie.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Ties the copies that a mirror has made to their originals: symmetric in the line of the drawing at which they were
/// mirrored, point by point, round ones of equal size. What points do not tell, the direction of a ray, comes with a
/// copy of the originals' constraints. Linear in the copies and in the constraints on the originals.
void tieMirrored(const TieScene& scene, const Mirror& edit, std::vector<Tie>& ties);

}  // namespace holdfast::editing
