#pragma once

#include <optional>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "workbench/editing/EditContext.h"

namespace holdfast {

/// What a cut leaves of a curve: two pieces, or one that keeps the curve's start, its end, or (closed curves) neither.
struct CutPieces {
    std::optional<Shape> first;
    std::optional<Shape> second;
};

/// Brings a parameter of a polyline that lies next to a vertex onto it, as the module reckons cuts; leaves others.
double ontoVertex(const Shape& shape, double param);

/// The pieces of a curve without what lies between two parameters; EditError when nothing would be left.
CutPieces cutOut(const Shape& shape, const std::string& name, double firstParam, double lastParam);

/// Makes a closed polyline an open one that starts and ends at its vertex 0; leaves anything else as it is.
void openAtVertexZero(EditContext& context, const std::string& name);

/// The host's half of break and trim: drives a centre whose parameters are set through the cut. The entity keeps the
/// first piece; the second becomes a new entity. Returns the new entity's name, or an empty string.
std::string applyCut(EditContext& context, const std::string& name, const CutPieces& pieces,
                     ConstraintBreakCmdCenter& centre);

}  // namespace holdfast
