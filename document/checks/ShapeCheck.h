#pragma once

#include <optional>

#include "document/Document.h"
#include "document/Uses.h"
#include "document/text/DrawingError.h"

namespace holdfast::document {

/// The first thing that keeps a shape from being one: a number that is not finite, a radius or height that is not
/// positive, a ratio outside (0, 1], a direction of no length, an arc that turns backwards or more than once, knots,
/// weights or vertex lists that do not fit together. Cost: linear in the shape's numbers.
std::optional<Fault> faultIn(const Shape& shape);

}  // namespace holdfast::document
