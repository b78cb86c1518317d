#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// A sketch in a FreeCAD document.
struct FcstdSketchName {
    std::string name;   ///< by which the document knows it: Sketch001
    std::string label;  ///< by which its user does
};

/// The sketches of a document (the bytes of an .FCStd file) in their order. Throws DrawingError for what is no sound
/// document; nothing is unpacked but its text, of at most 64 MB.
std::vector<FcstdSketchName> sketchesInFcstd(std::string_view archive, const std::string& file);

struct FcstdDrawing {
    Document document;
    /// What the drawing does not hold, by its name in the sketch: "g5 (ArcOfHyperbola)", "c7 (SnellsLaw)".
    std::vector<std::string> notUnderstood;
};

/// One sketch as a drawing. Entity g3 and constraint c3 are number 3 of their lists, counted from 0, so that the edge
/// that the program calls Edge4 is g3. The origin and the axes are the fixed entities origin, x_axis and y_axis,
/// outside geometry x0, x1, ...: the geometry itself where the document holds it, and the points that coincide with it
/// (x0_start) where it does not. Helpers of ellipses are entities, those of splines are the splines' control points.
/// Expressions over constraints of the sketch are formulas as far as these can say them.
///
/// Throws DrawingError as above, and where no sketch has that name or, as the only one, that label.
FcstdDrawing readFcstd(std::string_view archive, const std::string& sketch, const std::string& file);

}  // namespace holdfast::formats
