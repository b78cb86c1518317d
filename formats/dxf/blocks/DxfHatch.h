#pragma once

#include "document/Blocks.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfGroups.h"

namespace holdfast::formats {

/// The outlines of a HATCH as a block, in the coordinates of its plane: polylines, and edges one by one. Its name is
/// that of the pattern. Seeds, pattern lines and gradients are left out. Throws DrawingError for groups that are
/// missing, are no numbers or do not count up to what the hatch says.
Block readDxfHatch(const DxfEntity& hatch);

}  // namespace holdfast::formats
