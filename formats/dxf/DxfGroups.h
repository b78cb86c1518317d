#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

/// One group of a DXF text: a code that says what the value is, and the value, without white space around it where it
/// is not text.
struct DxfGroup {
    int code = 0;
    std::string_view value;
    int line = 0;                    ///< of the value, counted from 1
    std::size_t begin = 0, end = 0;  ///< both lines with their ends, in bytes of the text
};

/// Takes a DXF text apart into groups of two lines. Comments (code 999) are passed over. The text and the name must
/// outlive the reader and its groups.
class DxfGroups {
public:
    DxfGroups(std::string_view text, const std::string& fileName);

    /// The next group without taking it. At the end of the text: nothing.
    const std::optional<DxfGroup>& peek() const { return m_next; }
    /// Takes the next group. Throws DrawingError at the end of the text, naming what was expected there.
    DxfGroup take(const char* expected);

    /// The value as a number, finite; as a whole number. Throws DrawingError with the line.
    double number(const DxfGroup& group) const;
    int integer(const DxfGroup& group) const;

    /// The code page of texts that are not UTF-8, as the header names it.
    void setCodePage(std::string_view name) { m_codePage = name; }
    std::string_view codePage() const { return m_codePage; }

    /// The highest handle of the groups so far, those of header variables left out.
    std::uint64_t highestHandle() const { return m_highestHandle; }

    [[noreturn]] void fail(int line, std::string found, std::string expected) const;

private:
    void advance();
    void noteHandle(const DxfGroup& group);
    std::string_view takeLine();
    int codeOf(std::string_view line) const;
    std::size_t at() const { return static_cast<std::size_t>(m_rest.data() - m_text.data()); }

    std::string_view m_text, m_rest;
    const std::string* m_fileName;
    int m_line = 0;
    std::optional<DxfGroup> m_next;
    std::uint64_t m_highestHandle = 0;
    std::string_view m_codePage;
};

/// A number in hexadecimal digits; nothing for other texts.
std::optional<std::uint64_t> handleIn(std::string_view text);

/// One entity of a DXF text: its name and all groups up to the next name.
struct DxfEntity {
    std::string_view name;
    int line = 0;
    std::vector<DxfGroup> groups;
    const DxfGroups* source = nullptr;
    std::size_t begin = 0, end = 0;  ///< of its groups, left out ones too, in bytes of the text

    const DxfGroup* find(int code) const;
    /// The first group of a code as a number, or a default when there is none.
    double number(int code, double otherwise) const;
    int integer(int code, int otherwise) const;
    /// The first group of a code as a number; without one, an error that names the entity and the code.
    double required(int code) const;
    std::string_view requiredText(int code) const;
    [[noreturn]] void fail(std::string found, std::string expected) const;
};

/// Takes the name group and everything behind it that belongs to the entity. Groups of other programs (codes from
/// 1000), their lists (between braces behind code 102) and embedded objects (from code 101) are left out.
DxfEntity takeEntity(DxfGroups& groups);

/// The entities of one name that stand behind another one, and the SEQEND that may end them; `end` goes behind the last
/// one taken.
std::vector<DxfEntity> takeBehind(DxfGroups& groups, std::string_view name, std::size_t& end);

}  // namespace holdfast::formats
