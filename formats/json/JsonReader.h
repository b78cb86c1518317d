#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// A drawing from its JSON text. The result has passed checkDocument.
///
/// Throws one DrawingError for the first fault: line and column where the text is not JSON, the line and the JSON
/// pointer for all else. fileName only names the file in messages.
Document readJson(std::string_view text, const std::string& fileName);

/// The same from a stream, read to its end.
Document readJson(std::istream& in, const std::string& fileName);

}  // namespace holdfast::formats
