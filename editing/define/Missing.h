#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "editing/define/ProposedDimensions.h"

namespace holdfast::editing {

/// What a drawing lacks for being fully determined.
struct Missing {
    /// Constraints and dimensions without ids, in the order in which they are to be added: all of them hold as drawn,
    /// none follows from the drawing and the others. Reasons are in the user's words.
    std::vector<Proposal> constraints;
    std::vector<std::string> stillFree;     ///< entities whose last freedom no constraint takes that there is
    std::vector<std::string> leftAlone;     ///< entities that hang on constraints which do not hold
    std::vector<std::string> outOfReach{};  ///< entities that are only determined when they are named
};

/// The fewest constraints and dimensions that take the freedom of some entities, or of all that are not out of reach
/// where none is named. First what holds as drawn: shared points, level and upright lines, tangencies, lines in line,
/// parallel and at right angles, equal radii and lengths, points on curves, symmetric pairs. Then dimensions at the
/// values that they measure, from a datum: what the drawing holds already, else a point that is fixed for it, at the
/// origin or at the lower left.
/// Nothing moves for any of it: what counts as holding is what the solver counts as that, 1e-10 of the drawing's size.
///
/// Of parts with constraints that do not hold nothing is said. Throws UnsolvableDocument for a drawing that the solver
/// cannot read. Cost: a few eliminations of the equations of all that might be added, near to linear in the drawing.
Missing missingIn(const Document& document, const std::vector<std::string>& entities = {});

}  // namespace holdfast::editing
