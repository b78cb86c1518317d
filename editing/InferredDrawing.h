#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "editing/constraints/ImpliedConstraints.h"
#include "inference/Infer.h"

namespace holdfast::editing {

/// A drawing with the constraints that were inferred, which stand behind those that it had.
struct InferredDrawing {
    Document document;
    std::size_t firstNew = 0;
    double length = 0.0;                    ///< the tolerance that was used, in the drawing's unit
    Thinning thinning;                      ///< what was taken out again, and whether all that is left can hold
    std::vector<std::string> outOfReach{};  ///< entities that got none, as they are not to be edited by chance
};

/// Joined lines and arcs made polylines. A joint needs no constraint then, so that the drawing is left with those that
/// it had. The tolerance that was used becomes that of the options. Costs as inferConstraints.
Document withPolylines(const Document& plain, InferOptions& options);

/// Puts constraints on a drawing and takes those out again that the others imply, or that cannot hold exactly beside
/// them. Costs as inferConstraints and thinOut.
InferredDrawing inferredDrawing(const Document& plain, const InferOptions& options);

}  // namespace holdfast::editing
