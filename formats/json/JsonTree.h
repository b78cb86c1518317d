#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

/// One value of a JSON text, with the line on which it (a scalar: its key or its list) begins.
struct JsonNode {
    enum class Kind { null, flag, integer, number, text, list, object };

    Kind kind = Kind::null;
    bool flag = false;
    double number = 0.0;  ///< integer and number
    std::string text;
    std::vector<std::string> keys;  ///< object: names of the items
    std::vector<JsonNode> items;    ///< list elements, or the members' values in the order of keys
    int line = 0;
};

/// The whole text as a tree. Throws DrawingError with line and column for text that is not JSON, and for a name that
/// an object has twice.
JsonNode parseJsonTree(std::string_view text, const std::string& fileName);

/// Takes an object that stands in a list of the root, by the list's name, as soon as it has ended.
using TakeListed = std::function<void(std::string_view list, const JsonNode& item)>;

/// The tree of a text without the objects in the root's lists, which are handed over one by one: what it needs of
/// memory does not grow with them. What the taker throws passes through.
JsonNode parseJsonTree(std::string_view text, const std::string& fileName, const TakeListed& take);

/// What a reader of a message calls a value: the text "abc", a list of 3 items, the number 3.5, nothing (null).
std::string describe(const JsonNode& node);

/// The JSON pointer from root to a node of its tree. Cost: a walk through the tree; for messages only.
std::string pointerTo(const JsonNode& root, const JsonNode& node);

/// The deepest node that exists on the way of a JSON pointer.
const JsonNode& nodeNear(const JsonNode& root, std::string_view pointer);

}  // namespace holdfast::formats
