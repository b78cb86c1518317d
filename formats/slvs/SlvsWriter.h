#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

struct SlvsOutput {
    std::string text;
    std::vector<std::string> notes;  ///< what it does not hold as the drawing does, and what became of that
};

/// A drawing as a SolveSpace file with one sketch, in the world's xy plane. Polylines have to be lines and arcs before.
/// The origin and the axes, where they are fixed, are those of the sketch; curves that it has no kind for are cubics
/// within the tolerance. Throws DrawingError for more than 32,764 entities. Cost: linear.
SlvsOutput slvsText(const Document& document, double tolerance);

}  // namespace holdfast::formats
