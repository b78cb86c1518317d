#include "editing/text/ParseProperty.h"

#include <algorithm>

namespace holdfast::editing {

std::vector<std::string_view> propertyWords() {
    std::vector<std::string_view> words;
    for (const PropertyRow& row : allProperties())
        if (std::find(words.begin(), words.end(), row.word) == words.end())
            words.push_back(row.word);
    return words;
}

namespace {

/// A word is the same property of the same kind for every entity that has it.
const PropertyRow& rowOf(std::string_view word) {
    const auto rows = allProperties();
    return *std::find_if(rows.begin(), rows.end(), [word](const PropertyRow& row) { return row.word == word; });
}

}  // namespace

PropertyWord takeProperty(EditText& text, const Name& entity) {
    const PropertyRow& row = rowOf(text.oneOfWords(propertyWords(), "a property of " + entity.value));
    return {{row.property, text.column()}, row.valueKind, isListed(row.property)};
}

std::variant<Vec2, Coordinate, double> takePropertyValue(EditText& text, ValueKind kind) {
    if (kind == ValueKind::angle)
        return text.number("the new angle in degrees");
    if (kind != ValueKind::point)
        return text.number("the new value");
    if (text.accept("x"))
        return Coordinate{Coordinate::Axis::x, text.number("the new x")};
    if (text.accept("y"))
        return Coordinate{Coordinate::Axis::y, text.number("the new y")};
    return text.point("the new point");
}

}  // namespace holdfast::editing
