#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

/// A part of a text, in bytes.
struct XmlRange {
    std::size_t begin = 0, end = 0;
};

/// A tag of an XML text.
struct XmlTag {
    enum class Kind { opening, closing, empty };

    Kind kind = Kind::opening;
    std::string_view name;
    XmlRange range;  ///< from its < to behind its >
};

/// The tags of an XML text in their order, with where they stand: for texts of which only parts are read and the rest
/// is kept byte for byte. Texts, comments and instructions are passed over. Memory: the names of the open elements.
class XmlTags {
public:
    /// The file is for messages.
    XmlTags(std::string_view text, const std::string& file) : m_text(text), m_file(file) {}

    /// Nothing at the end. Throws DrawingError, with the line, for what is not well-formed, for a document type (which
    /// could make much out of little, or read other files), and for elements nested deeper than any program does.
    std::optional<XmlTag> next();

    /// The names of the elements around what comes next, from the outermost on.
    const std::vector<std::string_view>& path() const { return m_path; }

private:
    [[noreturn]] void fail(std::size_t at, std::string found, std::string expected) const;
    bool passMarkup();
    void passTo(std::string_view end, std::size_t from);
    XmlTag tag();
    std::size_t tagEnd() const;
    void follow(const XmlTag& tag);

    std::string_view m_text;
    const std::string& m_file;
    std::size_t m_at = 0;
    std::vector<std::string_view> m_path;
};

}  // namespace holdfast::formats
