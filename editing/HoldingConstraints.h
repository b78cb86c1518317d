#pragma once

#include <cstddef>

#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// Adds the constraints of a document from one on that hold in it; the others are left out. The document is a part of
/// the drawing as it is, but for these constraints. Linear in it.
void addHolding(Drawing& drawing, const Document& document, std::size_t firstNew);

}  // namespace holdfast::editing
