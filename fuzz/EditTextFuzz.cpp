#include "editing/text/Parse.h"
#include "fuzz/Fuzz.h"

// Edits as users type them: what one is said by reads as the same edit.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace holdfast;
    const std::string text = fuzz::textOf(data, size);
    editing::Edit edit;
    try {
        edit = editing::parse(text);
    } catch (const editing::EditError&) {
        return 0;
    }
    const std::string said = editing::toText(edit);
    try {
        fuzz::require(editing::parse(said) == edit, "an edit reads as the same");
    } catch (const editing::EditError& error) {
        std::fprintf(stderr, "%s: %s\n", said.c_str(), error.what());
        std::abort();
    }
    return 0;
}
