#pragma once

#include <algorithm>
#include <optional>
#include <ostream>
#include <string>

#include "document/text/DrawingError.h"
#include "formats/json/JsonReader.h"

namespace holdfast::formats {

/// JSON with single quotes for double ones, so that it can be read inside a test.
inline std::string json(std::string text) {
    std::replace(text.begin(), text.end(), '\'', '"');
    return text;
}

/// The text of a drawing with these entities and constraints; entities begin on line 3.
inline std::string drawingText(const std::string& entities, const std::string& constraints = "") {
    return json("{'units': {'length': 'mm', 'angle': 'rad'},\n'entities': [\n" + entities + "\n],\n'constraints': [\n" +
                constraints + "\n]}\n");
}

inline Document drawing(const std::string& entities, const std::string& constraints = "") {
    return readJson(drawingText(entities, constraints), "test.json");
}

/// The error that reading a text ends with, or nothing.
inline std::optional<DrawingError> errorOf(const std::string& text) {
    try {
        readJson(text, "test.json");
    } catch (const DrawingError& error) {
        return error;
    }
    return std::nullopt;
}

/// One row of a table of faulty drawings.
struct FaultyDrawing {
    const char* description;
    std::string text;
    const char* place;     ///< all of it
    const char* found;     ///< a piece of it
    const char* expected;  ///< a piece of it
};

inline std::ostream& operator<<(std::ostream& out, const FaultyDrawing& row) {
    return out << row.description;
}

}  // namespace holdfast::formats
