#pragma once

#include <string>
#include <unordered_map>

#include "editing/Uses.h"
#include "geometry/Transforms.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

// What a reflection makes of constraints all of whose entities are reflected.

/// Gives the copies, each named by its original, the constraints that hold among the originals: a level line may become
/// an upright one, signed dimensions and angles are taken the other way round. Those that say where something lies or
/// leads, and do not hold of the copies, are left out; so are fixed ones, switched-off ones and the bounds of
/// composites, whose members come one by one. Linear in the constraints on these entities.
void copyConstraints(Drawing& drawing, const std::unordered_map<std::string, std::string>& copies,
                     const PlaneTransform& mirror);

/// For entities that are moved themselves: gives the signed distances and angles among them the sense that a reflection
/// or a half turn gives them; other transforms leave them. Linear in the constraints on these entities.
void turnMeasures(Drawing& drawing, const std::vector<std::string>& names, const PlaneTransform& transform);

}  // namespace holdfast::editing
