#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "document/Document.h"
#include "inference/Uses.h"

namespace holdfast::inference {

/// For every point the number of its cluster, for a tolerance above 0. A point belongs to the first cluster whose first
/// point is within the tolerance, so that no chain of near points can bridge a gap; numbers ascend in the order of
/// first points. Expected cost: linear, by a hashed grid whose cells are as wide as the tolerance.
std::vector<std::size_t> clusteredPoints(std::span<const Vec2> points, double tolerance);

}  // namespace holdfast::inference
