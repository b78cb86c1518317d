#pragma once

#include <vector>

#include "editing/ties/Tie.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Ties what joins two edited curves to them: the arc of a fillet, or the line of a chamfer, coincident with the new
/// ends and an arc tangent there; on a curve that has stayed whole, on it and tangent; within a polyline its arc
/// segment tangent to its neighbours; the curves of a sharp corner at their common end, or the end of one on the other
/// that has stayed whole. Linear in the edited curves.
void tieBridges(const TieScene& scene, std::vector<Tie>& ties);

}  // namespace holdfast::editing
