#pragma once

#include "document/Document.h"
#include "hosting/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::hosting {

/// The elements and constraints of a drawing as a sketch. Throws SketchError for a constraint on an element that the
/// drawing does not have.
SketchData sketchFrom(const Document& document);

/// The number of a constraint in the sketch by its id; -1 for one that it does not have. Linear in the constraints.
int constraintNumber(const SketchData& sketch, std::string_view id);

/// Writes the sketch's values into the drawing that it was made from, shapes that did not change untouched to the
/// last bit, and measured dimensions at what they measure now.
void applySketch(const SketchData& sketch, Document& document);

/// The values that an element of the shape has, in the layout of its kind. Throws SketchError for a shape that is none.
std::vector<double> parametersOf(const Shape& shape);

/// The shape of an element as the sketch has it; what a sketch leaves out (vertex identifiers, knots, a text's words)
/// comes from `like`, a shape of the same kind.
Shape shapeFrom(const SketchData& sketch, int entity, Shape like);

}  // namespace holdfast::hosting
