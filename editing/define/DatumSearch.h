#pragma once

#include <optional>
#include <vector>

#include "editing/define/ProposedDimensions.h"
#include "hosting/ConstraintRanks.h"

namespace holdfast::editing {

/// Reference geometry at the origin, or what else is held already; where there is none, a point that is to be fixed
/// for it, at the origin or at the lower left. Points that are held in one direction only may serve for that one.
/// By entity: it is left alone, and serves for nothing; it may move, and so be fixed. Points within `same` are as low
/// and as far left. Linear in the drawing.
std::optional<Datum> datumIn(const Document& document, ConstraintRanks& ranks, const std::vector<bool>& isAlone,
                             const std::vector<bool>& mayMove, double same);

}  // namespace holdfast::editing
