#pragma once

#include <string>
#include <vector>

#include "editing/ties/Tie.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Ties the two pieces of a curve that was cut, or the two ends of a ring that was opened: coincident where they touch,
/// and in line: collinear, or concentric and equal, with or without a gap; splines are tangent where they touch. Linear
/// in the pieces.
void tiePieces(const TieScene& scene, const std::string& curve, std::vector<Tie>& ties);

}  // namespace holdfast::editing
