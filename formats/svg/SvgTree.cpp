#include "formats/svg/SvgTree.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "document/text/Capitals.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "document/text/Utf8.h"

namespace holdfast::formats {
namespace {

/// What an element and an attribute of a tree cost, in bytes.
constexpr std::size_t kSvgElementSize = 64, kSvgAttributeSize = 40, kSvgLargestTree = 128U << 20U;
constexpr std::size_t kSvgLongestText = 64U << 20U;
constexpr std::string_view kSvgBlanks = " \t\r\n";

int lineAt(std::string_view text, std::size_t at) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(at, text.size()));
    return static_cast<int>(1 + std::count(text.begin(), end, '\n'));
}

/// Goes through the tags of a text without keeping any.
class SvgMarkup {
public:
    SvgMarkup(std::string_view text, const std::string& file) : m_text(text), m_file(file) {}

    void check() {
        for (m_at = m_text.find('<'); m_at != std::string_view::npos; m_at = m_text.find('<', m_at)) {
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
                passTag();
        }
        if (m_size == 0)
            fail(0, "no element", "a picture, <svg>");
        if (!m_path.empty())
            fail(m_text.size(), "the end of the text inside of <" + std::string(m_path.back()) + ">",
                 "a whole picture; this one breaks off");
    }

private:
    [[noreturn]] void fail(std::size_t at, std::string found, std::string expected) const {
        throw DrawingError(m_file, {"", std::move(found), std::move(expected)}, lineAt(m_text, at));
    }

    void passTo(std::string_view end, std::size_t from) {
        const std::size_t found = m_text.find(end, m_at + from);
        if (found == std::string_view::npos)
            fail(m_at, inQuotes(m_text.substr(m_at, from)) + " without an end", inQuotes(end));
        m_at = found + end.size();
    }

    /// The > that ends what begins here, or another sign of these; one in quotes does not count.
    std::size_t find(std::string_view signs) const {
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

    /// Many programs name the type of the document; what a type defines itself could make much out of little, or read
    /// other files.
    void passDocumentType() {
        const std::size_t end = find("[<>");
        if (m_text[end] != '>')
            fail(end, "a document type with definitions of its own",
                 "a picture without them; save it as plain SVG in the program that drew it");
        m_at = end + 1;
    }

    void passTag() {
        const std::size_t end = find("<>");
        if (m_text[end] == '<')
            fail(m_at, "a tag without an end", "a > behind it");
        const std::string_view tag = m_text.substr(m_at, end - m_at);
        if (tag.starts_with("</"))
            leave(tag.substr(2, tag.find_first_of(kSvgBlanks) - 2));
        else
            enter(tag);
        m_at = end + 1;
    }

    void leave(std::string_view name) {
        if (m_path.empty() || m_path.back() != name)
            fail(m_at, "</" + std::string(name) + ">",
                 m_path.empty() ? "the end of the text" : "</" + std::string(m_path.back()) + ">");
        m_path.pop_back();
    }

    void enter(std::string_view tag) {
        m_size +=
            kSvgElementSize + kSvgAttributeSize * static_cast<std::size_t>(std::count(tag.begin(), tag.end(), '='));
        if (m_size > kSvgLargestTree)
            fail(m_at, "more than a million elements or attributes", "a smaller picture, or parts of it");
        if (tag.ends_with('/'))
            return;
        if (m_path.size() == kSvgDeepest)
            fail(m_at, "elements nested more than " + std::to_string(kSvgDeepest) + " deep",
                 "fewer groups in each other; ungroup in the program that drew it");
        m_path.push_back(tag.substr(1, tag.find_first_of(kSvgBlanks) - 1));
    }

    std::string_view m_text;
    const std::string& m_file;
    std::size_t m_at = 0, m_size = 0;
    std::vector<std::string_view> m_path;  // the elements around what comes next
};

/// Texts of one byte a letter, of which the first 256 of Unicode are the common part.
std::string fromLatin(std::string_view text) {
    std::string utf8;
    for (const char c : text)
        appendUtf8(utf8, static_cast<unsigned char>(c));
    return utf8;
}

std::string inUtf8(std::string_view text, const std::string& file) {
    if (text.size() > kSvgLongestText)
        throw DrawingError(file, {"", "a text of more than 64 MB", "a smaller picture, or parts of it"});
    if (isUtf8(text))
        return std::string(text);
    const std::string head = inCapitals(text.substr(0, text.find('>')));
    if (head.starts_with("<?XML") &&
        (head.find("ISO-8859-1") != std::string::npos || head.find("WINDOWS-1252") != std::string::npos))
        return fromLatin(text);
    throw DrawingError(file, {"", "letters in another encoding than UTF-8", "a picture that is saved in UTF-8"}, 1);
}

}  // namespace

SvgTree::SvgTree(std::string_view text, const std::string& file) : m_text(inUtf8(text, file)), m_file(file) {
    SvgMarkup(m_text, file).check();
    const pugi::xml_parse_result result =
        m_tree.load_buffer(m_text.data(), m_text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result)
        throw DrawingError(file, {"", result.description(), "a well-formed picture"},
                           lineAt(m_text, static_cast<std::size_t>(result.offset)));
    const std::string_view name = root().name();
    const std::size_t colon = name.find(':');
    m_prefix = name.substr(0, colon == std::string_view::npos ? 0 : colon + 1);
    if (name.substr(m_prefix.size()) != "svg")
        fail(root(), "<" + std::string(name) + ">", "a picture, <svg>");
    index(root());
}

void SvgTree::index(pugi::xml_node node) {
    if (const pugi::xml_attribute id = node.attribute("id"))
        m_byId.emplace(id.value(), node);
    for (const pugi::xml_node child : node.children())
        index(child);
}

pugi::xml_node SvgTree::find(const std::string& id) const {
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? pugi::xml_node() : found->second;
}

std::string_view SvgTree::nameOf(pugi::xml_node node) const {
    std::string_view name = node.name();
    if (node.type() != pugi::node_element || !name.starts_with(m_prefix))
        return {};
    name.remove_prefix(m_prefix.size());
    return name.find(':') == std::string_view::npos ? name : std::string_view();
}

void SvgTree::fail(pugi::xml_node node, std::string found, std::string expected) const {
    throw DrawingError(m_file, {"", std::move(found), std::move(expected)},
                       lineAt(m_text, static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, node.offset_debug()))));
}

}  // namespace holdfast::formats
