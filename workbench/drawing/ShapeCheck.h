#pragma once

#include <optional>

#include "workbench/drawing/Document.h"
#include "workbench/drawing/DrawingError.h"

namespace holdfast {

/// The first thing that keeps a shape from being one: a number that is not finite, a radius or height that is not
/// positive, a ratio outside (0, 1], a direction of no length, an arc that turns backwards or more than once, knots,
/// weights or vertex lists that do not fit together. Cost: linear in the shape's numbers.
std::optional<Fault> faultIn(const Shape& shape);

}  // namespace holdfast
