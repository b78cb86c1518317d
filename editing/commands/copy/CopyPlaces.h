#pragma once

#include <cstddef>
#include <vector>

#include "editing/Edit.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {

/// Where the copies go, one transform of the originals for each: a row, rows one behind the other, or a ring. EditError
/// for counts below 1, for more than a drawing of so many originals should get at once, and for a copy that would lie
/// on the originals or on another one.
std::vector<PlaneTransform> copyPlaces(const Copy& edit);

}  // namespace holdfast::editing
