#include "formats/fcstd/XmlTags.h"

#include <algorithm>

#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"

namespace holdfast::formats {
namespace {

/// Documents nest about ten deep.
constexpr std::size_t kDeepest = 256;

}  // namespace

std::optional<XmlTag> XmlTags::next() {
    for (;;) {
        m_at = m_text.find('<', m_at);
        if (m_at == std::string_view::npos) {
            m_at = m_text.size();
            if (!m_path.empty())
                fail(m_at, "the end of the text inside of <" + std::string(m_path.back()) + ">", "a whole document");
            return std::nullopt;
        }
        if (passMarkup())
            continue;
        const XmlTag found = tag();
        follow(found);
        m_at = found.range.end;
        return found;
    }
}

void XmlTags::fail(std::size_t at, std::string found, std::string expected) const {
    const auto line = 1 + std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    throw DrawingError(m_file, {"Document.xml", std::move(found), std::move(expected)}, static_cast<int>(line));
}

/// Comments, instructions and raw texts have no tags.
bool XmlTags::passMarkup() {
    const std::string_view rest = m_text.substr(m_at);
    if (rest.starts_with("<!--"))
        passTo("-->", 4);
    else if (rest.starts_with("<![CDATA["))
        passTo("]]>", 9);
    else if (rest.starts_with("<?"))
        passTo("?>", 2);
    else if (rest.starts_with("<!"))
        fail(m_at, "a document type", "a document without one, as every document of FreeCAD is");
    else
        return false;
    return true;
}

void XmlTags::passTo(std::string_view end, std::size_t from) {
    const std::size_t found = m_text.find(end, m_at + from);
    if (found == std::string_view::npos)
        fail(m_at, inQuotes(m_text.substr(m_at, from)) + " without an end", inQuotes(end));
    m_at = found + end.size();
}

XmlTag XmlTags::tag() {
    XmlTag found;
    found.range = {m_at, tagEnd()};
    std::size_t begin = m_at + 1;
    if (m_text[begin] == '/') {
        found.kind = XmlTag::Kind::closing;
        ++begin;
    } else if (m_text[found.range.end - 2] == '/') {
        found.kind = XmlTag::Kind::empty;
    }
    found.name = m_text.substr(begin, m_text.find_first_of(" \t\r\n/>", begin) - begin);
    if (found.name.empty())
        fail(m_at, "a tag without a name", "the name of an element");
    return found;
}

/// A > in quotes ends no tag.
std::size_t XmlTags::tagEnd() const {
    char quote = 0;
    for (std::size_t at = m_at + 1; at < m_text.size(); ++at) {
        const char c = m_text[at];
        if (c == '<')
            break;
        if (quote != 0)
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            return at + 1;
    }
    fail(m_at, "a tag without an end", "a > behind it");
}

void XmlTags::follow(const XmlTag& tag) {
    if (tag.kind == XmlTag::Kind::opening) {
        if (m_path.size() == kDeepest)
            fail(tag.range.begin, "elements nested more than " + std::to_string(kDeepest) + " deep",
                 "elements as deep as documents nest them");
        m_path.push_back(tag.name);
    } else if (tag.kind == XmlTag::Kind::closing) {
        if (m_path.empty() || m_path.back() != tag.name)
            fail(tag.range.begin, "</" + std::string(tag.name) + ">",
                 m_path.empty() ? "the end of the text" : "</" + std::string(m_path.back()) + ">");
        m_path.pop_back();
    }
}

}  // namespace holdfast::formats
