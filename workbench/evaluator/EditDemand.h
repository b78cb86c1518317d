#pragma once

#include "workbench/evaluator/Solve.h"

namespace holdfast {

/// What becomes of an edit that the constraints do not allow as it is meant.
enum class WhenBarred {
    refuse,     ///< the user's values or nothing
    keepSizes,  ///< as near as it can be with the edited elements' sizes kept, if possible
    yield       ///< as near as it can be
};

/// What an edit asks of a figure, whichever command it comes from.
struct EditDemand {
    std::vector<Target> targets{};  ///< the user's values; empty: only the constraints count
    std::vector<Target> kept{};     ///< values of edited elements that stay unless they make the edit impossible
    std::vector<int> edited{};      ///< elements that the edit is about
    WhenBarred whenBarred = WhenBarred::refuse;

    /// Asks for all values of an element as a shape has them. A shape of another layout asks for nothing.
    void ask(const Figure& figure, int entity, const Shape& shape);
};

/// Moves the figure as the demand asks; when it cannot be, the figure stays as it is and the result names what stands
/// in the way. Throws FigureError as solve does.
SolveResult meet(Figure& figure, const EditDemand& demand);

/// How far the figure is from the demand's targets, at worst, in drawing units (angles: radians).
double missOf(const Figure& figure, const EditDemand& demand);

}  // namespace holdfast
