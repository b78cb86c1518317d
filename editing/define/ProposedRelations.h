#pragma once

#include <vector>

#include "editing/define/ProposedDimensions.h"

namespace holdfast::editing {

/// Parts of the drawing's size, and radians, within which something holds as drawn: what the solver takes for that, so
/// that nothing moves for what is added.
inline constexpr double kHoldsAsDrawn = 1e-10;

/// What a drawing shows of itself and does not say yet: the relations that hold as drawn, within `same` as a length,
/// the plain ones first. One of two equations is followed by its halves. Cost: that of inferring.
std::vector<Proposal> proposedRelations(const Document& document, double same);

}  // namespace holdfast::editing
