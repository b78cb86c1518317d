#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// A sketch of a SolveSpace file: a group that draws in a plane.
struct SlvsSketchName {
    std::string name;   ///< g002
    std::string label;  ///< the rest of the name that the program shows: sketch-in-plane
};

/// The sketches of a file in their order. Throws DrawingError for what is no sound file.
std::vector<SlvsSketchName> sketchesInSlvs(std::string_view text, const std::string& file);

struct SlvsDrawing {
    Document document;
    /// What the drawing does not hold, by the program's name for it: "r00a (text)", "c007 (comment)".
    std::vector<std::string> notUnderstood;
};

/// One sketch as a drawing, seen upright on its plane. Entities are named by their requests (r004), constraints c001,
/// as the program shows them. What constraints hold on beside the sketch's own entities are fixed ones: `origin`,
/// `x_axis`, `y_axis`, and points and lines of other groups by their own names (e00040001).
///
/// Throws DrawingError as above, and where no sketch has that name or, as the only one, that label; an empty name is
/// the only sketch that there is. Cost: linear.
SlvsDrawing readSlvs(std::string_view text, const std::string& sketch, const std::string& file);

}  // namespace holdfast::formats
