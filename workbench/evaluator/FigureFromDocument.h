#pragma once

#include "workbench/evaluator/Figure.h"

namespace holdfast {

/// The elements and constraints of a drawing as a figure. Throws FigureError for a constraint on an element that the
/// drawing does not have.
Figure figureFrom(const Document& document);

/// Writes the figure's values into the drawing that it was made from, shapes that did not change untouched to the
/// last bit, and measured dimensions at what they measure now.
void applyFigure(const Figure& figure, Document& document);

/// The values that an element of the shape has, in the layout of its kind. Throws FigureError for a shape that is none.
std::vector<double> figureValues(const Shape& shape);

/// The shape of an element as the figure has it; what a figure leaves out (vertex identifiers, knots, a text's words)
/// comes from `like`, a shape of the same kind.
Shape shapeFrom(const Figure& figure, int entity, Shape like);

}  // namespace holdfast
