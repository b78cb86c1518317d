#pragma once

#include <optional>

#include "document/Blocks.h"
#include "document/Uses.h"
#include "geometry/Affine.h"

namespace holdfast::document {

/// From the block's coordinates to where column and row of the reference stand.
Affine transformOf(const BlockReference& reference, int column = 0, int row = 0);

/// The reference after a move of all that it shows.
BlockReference transformed(BlockReference reference, const PlaneTransform& transform);

/// What stands in a block by reference as a reference of its own where the block is; nothing where no such one is as
/// slanted as that would have to be.
std::optional<BlockReference> transformed(const BlockReference& inner, const Affine& outer);

}  // namespace holdfast::document
