#pragma once

#include <string>
#include <string_view>

#include "formats/Uses.h"

namespace holdfast::formats {

/// The text that describes the objects of a FreeCAD document (the entry Document.xml of its archive). Nothing else of
/// the archive is unpacked. Throws DrawingError for what is no archive or a broken one, for names of entries that lead
/// out of it, for an entry in cipher, and for one that says that it is, or is, longer than 64 MB.
std::string documentTextOf(std::string_view archive, const std::string& file);

/// The archive with another text in that place. All other entries are copied as they are packed.
std::string withDocumentText(std::string_view archive, std::string_view text, const std::string& file);

}  // namespace holdfast::formats
