#pragma once

#include <string>
#include <vector>

#include "editing/Sourced.h"
#include "editing/ties/Tie.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Ties the new ends of a curve that was trimmed or extended to the edges or boundaries that they lie on: coincident
/// where an end meets an end, else on the curve. Linear in the edges times the new ends.
void tieToBoundaries(const TieScene& scene, const std::string& curve, const std::vector<Name>& boundaries,
                     std::vector<Tie>& ties);

/// The ends of what is left of a curve that lie where it had none before.
std::vector<Place> newEndsOf(const TieScene& scene, const std::string& curve);

}  // namespace holdfast::editing
