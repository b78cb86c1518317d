#pragma once

#include <vector>

#include "editing/ties/Tie.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Ties the point of a corner that was kept to the two curves that met there: it lies on both, prolonged. Linear in the
/// curves.
void tieCorner(const TieScene& scene, std::vector<Tie>& ties);

}  // namespace holdfast::editing
