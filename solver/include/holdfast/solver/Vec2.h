#pragma once

#include <holdfast/geometry/Vec2.h>

namespace holdfast::solver {

/// A point or a vector, in whatever length unit the sketch is in.
using geometry::Vec2;

}  // namespace holdfast::solver
