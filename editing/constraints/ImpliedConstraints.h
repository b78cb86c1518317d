#pragma once

#include <cstddef>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// What became of new constraints beside those that they stand with.
struct Thinning {
    std::size_t implied = 0;   ///< taken out, because the others imply them
    std::size_t contrary = 0;  ///< taken out, because they hold nearly, but not exactly with the others
    bool holds = true;         ///< all that are left can hold together
    bool ownHold = true;       ///< false: those before the new ones cannot
};

/// Takes the new constraints, which are those from firstNew on, down to what the others do not imply. A collinearity or
/// a common point of which the others imply one half becomes the other half: a point on a line or a parallel, a
/// horizontal or a vertical. Where they cannot hold together (next to fixed entities, for instance), the later ones go.
/// Cost: a few diagnoses of the drawing, and a solve for each constraint that is in the way.
Thinning thinOut(Document& document, std::size_t firstNew);

}  // namespace holdfast::editing
