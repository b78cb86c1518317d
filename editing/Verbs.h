#pragma once

#include <span>
#include <string_view>

#include "editing/Edit.h"
#include "editing/Uses.h"
#include "editing/text/EditText.h"

namespace holdfast::editing {

/// One verb of the edits, for help, for suggestions, and for reading the words behind it. parse() throws
/// EditSyntaxError when it cannot.
struct EditVerb {
    std::string_view name;
    std::string_view usage;
    std::string_view example;  ///< empty for a verb that stands by itself
    std::string_view purpose;
    Edit (*parse)(EditText& text);
};

/// All verbs, in the order in which help shows them.
std::span<const EditVerb> editVerbs();

/// The verb that an edit begins with; EditSyntaxError with the nearest one for a verb that does not exist.
const EditVerb& takeVerb(EditText& text);

}  // namespace holdfast::editing
