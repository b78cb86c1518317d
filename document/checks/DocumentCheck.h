#pragma once

#include <string>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// Throws a DrawingError for the first contradiction in a document: everything that its file form could not say, or
/// could say and not mean. A document that passes can be written, read again and handed to the evaluator.
/// The error's place is the JSON pointer that the fault has in the file. Cost: linear in the document.
void checkDocument(const Document& document, const std::string& fileName);

}  // namespace holdfast::document
