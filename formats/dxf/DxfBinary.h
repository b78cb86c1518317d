#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

/// True for the bytes of a DXF file in binary form, by the words that it begins with.
bool isBinaryDxf(std::string_view bytes);

/// A binary DXF file as the text that says the same, and where each group stands in both.
struct DxfDecoded {
    std::string text;
    std::vector<std::size_t> inText, inBytes;  ///< of the groups, ascending; then the ends
    bool hasWideCodes = true;                  ///< two bytes each, as since the second binary form
};

/// Throws DrawingError for bytes that break off, with the group's number for a line.
DxfDecoded decodedDxf(std::string_view bytes, const std::string& fileName);

/// The bytes of a file after some range of its decoded text was replaced: what is no part of the groups there comes
/// back as it is.
class DxfByteChanges {
public:
    DxfByteChanges(std::string_view bytes, const DxfDecoded& decoded) : m_bytes(bytes), m_decoded(decoded) {}

    /// Ranges come in ascending order and do not overlap.
    void replace(std::size_t begin, std::size_t end, std::string_view text);
    std::string finished();

private:
    std::string_view m_bytes;
    const DxfDecoded& m_decoded;
    std::string m_result;
    std::size_t m_done = 0;
};

}  // namespace holdfast::formats
