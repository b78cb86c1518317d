#pragma once

#include "workbench/evaluator/Figure.h"

namespace holdfast {

/// The elements and constraints of a drawing as a figure. Throws FigureError for a constraint on an element that the
/// drawing does not have.
Figure figureFrom(const Document& document);

/// Writes the figure's values into the drawing that it was made from, shapes that did not change untouched to the
/// last bit, and measured dimensions at what they measure now.
void applyFigure(const Figure& figure, Document& document);

}  // namespace holdfast
