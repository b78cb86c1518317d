#pragma once

#include <span>
#include <string_view>

#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// One editing command of the workbench. run() reads the words behind the verb and does the edit; it throws EditError
/// (or GeometryError) when it cannot, and leaves putting the drawing back to the caller.
struct EditVerb {
    std::string_view name;
    std::string_view usage;
    std::string_view example;
    std::string_view purpose;
    void (*run)(EditText& text, EditContext& context);
};

/// All commands, in the order in which help shows them.
std::span<const EditVerb* const> editVerbs();

/// The command that an edit begins with; EditError with the nearest verb for one that does not exist.
const EditVerb& takeVerb(EditText& text);

extern const EditVerb kBreakVerb;
extern const EditVerb kTrimVerb;
extern const EditVerb kExtendVerb;
extern const EditVerb kFilletVerb;
extern const EditVerb kJoinVerb;
extern const EditVerb kLengthenVerb;
extern const EditVerb kStretchVerb;
extern const EditVerb kMirrorVerb;
extern const EditVerb kAlignVerb;
extern const EditVerb kRotateVerb;
extern const EditVerb kDragVerb;
extern const EditVerb kSetVerb;

}  // namespace holdfast::editing
