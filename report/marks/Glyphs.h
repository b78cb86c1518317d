#pragma once

#include <string>
#include <string_view>

#include "document/Document.h"
#include "report/Uses.h"

namespace holdfast::report {

/// The signs of all constraint kinds, drawn about (0, 0) within 6 units either way, in the colour of the text round
/// them. Stands once in a picture or page; the signs are then used by the reference below.
std::string glyphSheet();

/// A use of a kind's sign; empty for dimensions, whose sign is their value.
std::string glyphUse(ConstraintType type);

/// The quiet sign of a kept constraint that marks a point, to be drawn on the point itself.
std::string spotUse(ConstraintType type);

/// The sign of a kind alone as a small inline picture for texts and tables. Needs the sheet in the same document.
std::string inlineGlyph(ConstraintType type);

}  // namespace holdfast::report
