#pragma once

#include <string>
#include <vector>

#include "editing/Uses.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "geometry/Transforms.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// Copies that were made, and the constraints among their originals that do not hold of them.
struct MadeCopies {
    CopyNames names;
    std::vector<std::string> leftOut;
};

/// Adds copies of entities under a transform, in the order of the originals, with a copy of the constraints among them.
/// Linear in both.
MadeCopies addCopies(Drawing& drawing, const std::vector<std::string>& originals, const CopiedConstraints& constraints,
                     const PlaneTransform& transform, CopiedKinds kinds = CopiedKinds::all);

}  // namespace holdfast::editing
