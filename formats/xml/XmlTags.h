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

/// What a kind of XML text may have, and what it is called where it has something else.
struct XmlRules {
    std::string_view place;        ///< in messages, of the text in its file; may be empty
    std::string_view whole;        ///< expected where it breaks off: "a whole document"
    std::string_view withoutType;  ///< expected instead of a document type that it may not have
    std::string_view shallower;    ///< expected instead of elements nested too deep
    std::size_t deepest = 256;     ///< how deep they may be
    bool mayNameType = false;      ///< a document type without definitions of its own is passed over
};

/// A tag of an XML text.
struct XmlTag {
    enum class Kind { opening, closing, empty };

    Kind kind = Kind::opening;
    std::string_view name;
    XmlRange range;  ///< from its < to behind its >
};

/// The tags of an XML text in their order, with where they stand: for texts of which only parts are read and the rest
/// is kept byte for byte, and for those that are looked at before they become a tree. Texts, comments and instructions
/// are passed over. Memory: the names of the open elements.
class XmlTags {
public:
    /// The file is for messages. Text, file and rules must outlive the reader.
    XmlTags(std::string_view text, const std::string& file, const XmlRules& rules)
        : m_text(text), m_file(file), m_rules(rules) {}

    /// Nothing at the end. Throws DrawingError, with the line, for what is not well-formed, for a document type with
    /// definitions (which could make much out of little, or read other files), and for elements nested too deep.
    std::optional<XmlTag> next();

    /// The names of the elements around what comes next, from the outermost on.
    const std::vector<std::string_view>& path() const { return m_path; }

    /// Throws DrawingError, with the line of a place in the text.
    [[noreturn]] void fail(std::size_t at, std::string found, std::string_view expected) const;

private:
    bool passMarkup();
    void passTo(std::string_view end, std::size_t from);
    void passDocumentType();
    XmlTag tag();
    std::size_t endAt(std::string_view signs) const;
    void follow(const XmlTag& tag);

    std::string_view m_text;
    const std::string& m_file;
    const XmlRules& m_rules;
    std::size_t m_at = 0;
    std::vector<std::string_view> m_path;
};

}  // namespace holdfast::formats
