#pragma once

#include <optional>

#include "document/Document.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {

/// The reflection at a line, ray or construction line; nothing for other shapes.
std::optional<PlaneTransform> reflectionAt(const Shape& shape);

}  // namespace holdfast::editing
