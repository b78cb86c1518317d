#pragma once

#include <string>
#include <string_view>

#include "document/Document.h"
#include "editing/Session.h"

namespace holdfast::editing {

/// A drawing as text: edits that draw and constrain it, parted by semicolons.
Document drawnBy(std::string_view edits);

/// What one edit does to a drawing: "kept c1 c2; re-pointed c3 coincident g3_2.end g5.start; added point_on_curve
/// g3.end g7; deleted c4", each sort in the order of the drawing, sorts without a member left out. A refused edit is
/// answered with its error.
std::string outcomeOf(const Document& document, std::string_view edit);

/// What is wrong with the ties of an edit, compared with the same edit without: geometry that differs, something said
/// twice, a freedom that is greater, a network that is not sound, an undo that does not bring the drawing back. Empty
/// when all is well.
std::string faultOfTies(const Document& document, std::string_view edit);

}  // namespace holdfast::editing
