#include "editing/Verbs.h"

#include <algorithm>
#include <array>

namespace holdfast::editing {

std::span<const EditVerb* const> editVerbs() {
    static constexpr std::array verbs{&kBreakVerb, &kTrimVerb,     &kExtendVerb,  &kFilletVerb,
                                      &kJoinVerb,  &kLengthenVerb, &kStretchVerb, &kMirrorVerb,
                                      &kAlignVerb, &kRotateVerb,   &kDragVerb,    &kSetVerb};
    return verbs;
}

const EditVerb& takeVerb(EditText& text) {
    std::vector<std::string_view> names;
    for (const EditVerb* verb : editVerbs())
        names.push_back(verb->name);
    names.push_back("undo");  // which the session takes by itself
    const std::string found = text.oneOfWords(names, "an editing command");
    const auto verbs = editVerbs();
    if (found == "undo")
        text.fail("expected an editing command", "; only a session can take back its last edit");
    return **std::find_if(verbs.begin(), verbs.end(), [&](const EditVerb* verb) { return verb->name == found; });
}

}  // namespace holdfast::editing
