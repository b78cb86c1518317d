#pragma once

#include <map>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"
#include "formats/xml/XmlTags.h"

namespace holdfast::formats {

/// Where a sketch stands in the text of a document.
struct FcstdObject {
    std::string name;                                         ///< by which the document knows it: Sketch001
    std::string label;                                        ///< by which its user does
    std::map<std::string, XmlRange, std::less<>> properties;  ///< by name, from <Property to behind </Property>
};

struct FcstdObjects {
    std::string programVersion;  ///< of the program that wrote the document: "0.20R29177 (Git)"
    std::vector<FcstdObject> sketches;
};

/// The sketches of a document in their order. Throws DrawingError for a text that is none of a document. Cost: linear
/// in the text, with little memory beside it.
FcstdObjects objectsIn(std::string_view text, const std::string& file);

/// The element that stands in a range of the text, as a tree. Throws DrawingError for what is not well-formed and for
/// more elements than fit into about a hundred megabytes.
void loadPart(pugi::xml_document& tree, std::string_view text, XmlRange range, const std::string& file);

/// The element as text, so that it fits where it came from: its first line without the blanks before it.
std::string partText(pugi::xml_document& tree, std::string_view text, XmlRange range);

}  // namespace holdfast::formats
