#pragma once

#include <string>

#include "document/Document.h"
#include "report/Uses.h"
#include "report/picture/Frame.h"

namespace holdfast::report {

/// A text of a drawing as an SVG element with these further attributes. A line stands on its position; a paragraph
/// hangs from it, its baselines 5/3 of the height apart.
std::string textElement(const TextShape& text, const Frame& frame, const std::string& attributes, int places);

/// The box that a text takes up, as wide as common type is.
Box textBounds(const TextShape& text);

}  // namespace holdfast::report
