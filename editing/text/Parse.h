#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editing/Edit.h"
#include "editing/EditError.h"
#include "editing/Uses.h"

namespace holdfast::hosting {
class Drawing;
}  // namespace holdfast::hosting

namespace holdfast::editing {

/// The edit that a text says, in the form that the table of verbs shows ("break g3 at 4,0"). Knows no drawing; names
/// and other words that only a drawing can judge carry their column. EditSyntaxError for a text that is none.
/// Cost: linear in the text.
Edit parse(std::string_view text);

/// The text of an edit: parse(toText(edit)) == edit, to the last bit of every number, for each edit with the values
/// that Edit.h allows and with a property's value of its own kind. Names that would be read otherwise stand in quotes.
std::string toText(const Edit& edit);

/// The same as parse for a text that is meant for this drawing. Of several faults the first is told: RefusedWord for a
/// name before the word that does not fit when the drawing has no such entity. An entity may also be named by a point,
/// "@4,0.5": the one that is nearest to it; where that is far away a remark says so.
Edit parseFor(std::string_view text, const Drawing& drawing, std::vector<std::string>* remarks = nullptr);

}  // namespace holdfast::editing
