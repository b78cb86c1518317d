#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// The drawing as JSON text: one entity and one constraint a line, numbers as the shortest text that reads back as
/// the same double, members in a fixed order, those with their usual value left out. Reading it gives an equal
/// document. Throws DrawingError for a document that could not be read again.
std::string jsonText(const Document& document);

void writeJson(const Document& document, std::ostream& out);

/// The same text in pieces of some thousand bytes, so that there need be no memory for all of it. What is wrong with
/// the document is found before the first one, broken text apart.
void writeJson(const Document& document, const std::function<void(std::string_view piece)>& put);

}  // namespace holdfast::formats
