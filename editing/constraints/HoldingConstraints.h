#pragma once

#include <cstddef>
#include <vector>

#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

struct EditContext;

/// Adds the constraints of a document from one on that hold in it; the others are left out. The document is a part of
/// the drawing as it is, but for these constraints. Linear in it.
/// @return the numbers of those that were left out, ascending
std::vector<std::size_t> addHolding(Drawing& drawing, const Document& document, std::size_t firstNew);

/// Puts back what the module has deleted although it still holds where it is now: dimensions, which are the host's to
/// judge, and what went at once without having been collected, but for what tied two segments of one polyline to each
/// other. Linear in what was deleted and the constraints on its entities.
void putBackHolding(const EditContext& context);

}  // namespace holdfast::editing
