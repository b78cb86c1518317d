#include "formats/xml/XmlTags.h"

#include <algorithm>

#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"

namespace holdfast::formats {

std::optional<XmlTag> XmlTags::next() {
    for (;;) {
        m_at = m_text.find('<', m_at);
        if (m_at == std::string_view::npos) {
            m_at = m_text.size();
            if (!m_path.empty())
                fail(m_at, "the end of the text inside of <" + std::string(m_path.back()) + ">", m_rules.whole);
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

void XmlTags::fail(std::size_t at, std::string found, std::string_view expected) const {
    const auto line = 1 + std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    throw DrawingError(m_file, {std::string(m_rules.place), std::move(found), std::string(expected)},
                       static_cast<int>(line));
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
        passDocumentType();
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

/// Many programs name the type of the document; what a type defines itself is another matter.
void XmlTags::passDocumentType() {
    if (!m_rules.mayNameType)
        fail(m_at, "a document type", m_rules.withoutType);
    const std::size_t end = endAt("[<>");
    if (m_text[end] != '>')
        fail(end, "a document type with definitions of its own", m_rules.withoutType);
    m_at = end + 1;
}

XmlTag XmlTags::tag() {
    XmlTag found;
    const std::size_t last = endAt("<>");
    if (m_text[last] == '<')
        fail(m_at, "a tag without an end", "a > behind it");
    found.range = {m_at, last + 1};
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

/// The > that ends what begins here, or another sign of these; one in quotes does not count.
std::size_t XmlTags::endAt(std::string_view signs) const {
    char quote = 0;
    for (std::size_t at = m_at + 1; at < m_text.size(); ++at) {
        const char c = m_text[at];
        if (quote != 0)
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (signs.find(c) != std::string_view::npos)
            return at;
    }
    fail(m_at, "a tag without an end", "a > behind it");
}

void XmlTags::follow(const XmlTag& tag) {
    if (tag.kind == XmlTag::Kind::opening) {
        if (m_path.size() == m_rules.deepest)
            fail(tag.range.begin, "elements nested more than " + std::to_string(m_rules.deepest) + " deep",
                 m_rules.shallower);
        m_path.push_back(tag.name);
    } else if (tag.kind == XmlTag::Kind::closing) {
        if (m_path.empty() || m_path.back() != tag.name)
            fail(tag.range.begin, "</" + std::string(tag.name) + ">",
                 m_path.empty() ? "the end of the text" : "</" + std::string(m_path.back()) + ">");
        m_path.pop_back();
    }
}

}  // namespace holdfast::formats
