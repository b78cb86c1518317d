#pragma once

#include <optional>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Where two curves that are tangent touch: lines, circles and arcs with each other, and lines with ellipses. Nothing
/// for other curves, and for circles about one centre.
std::optional<Vec2> contactOf(const Shape& a, const Shape& b);

}  // namespace holdfast::editing
