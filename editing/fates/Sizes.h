#pragma once

#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "editing/fates/FateReport.h"

namespace holdfast::editing {

/// One size of an entity.
struct EntitySize {
    SizeKind size = SizeKind::length;
    double value = 0.0;  ///< a length, or degrees
};

/// All sizes of a shape, as they are listed below. Cost: linear in it.
std::vector<EntitySize> sizesOf(const Shape& shape);

/// The sizes that both shapes have and that differ by more than rounding: lengths of lines, arcs, elliptical arcs,
/// splines and polylines, radii, and the angles over which arcs sweep. An arc and a circle have the radius in common.
/// Cost: linear in the shapes.
std::vector<SizeChange> sizeChanges(const Shape& before, const Shape& after);

}  // namespace holdfast::editing
