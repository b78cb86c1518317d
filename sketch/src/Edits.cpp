#include "holdfast/sketch/Edits.h"

#include "editing/text/Parse.h"

namespace holdfast::sketch {

Edit parse(std::string_view text) {
    return editing::parse(text);
}

std::string toText(const Edit& edit) {
    return editing::toText(edit);
}

}  // namespace holdfast::sketch
