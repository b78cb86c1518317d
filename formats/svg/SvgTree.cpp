#include "formats/svg/SvgTree.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "document/text/Capitals.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "document/text/Utf8.h"
#include "formats/xml/XmlTags.h"

namespace holdfast::formats {
namespace {

/// What an element and an attribute of a tree cost, in bytes.
constexpr std::size_t kSvgElementSize = 64, kSvgAttributeSize = 40, kSvgLargestTree = 128U << 20U;
constexpr std::size_t kSvgLongestText = 64U << 20U;

int lineAt(std::string_view text, std::size_t at) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(at, text.size()));
    return static_cast<int>(1 + std::count(text.begin(), end, '\n'));
}

constexpr XmlRules kSvgRules{.place = "",
                             .whole = "a whole picture; this one breaks off",
                             .withoutType = "a picture without them; save it as plain SVG in the program that drew it",
                             .shallower = "fewer groups in each other; ungroup in the program that drew it",
                             .deepest = kSvgDeepest,
                             .mayNameType = true};

/// Goes through the tags of a text without keeping any.
void checkMarkup(std::string_view text, const std::string& file) {
    XmlTags tags(text, file, kSvgRules);
    std::size_t size = 0;
    while (const std::optional<XmlTag> tag = tags.next()) {
        const std::string_view said = text.substr(tag->range.begin, tag->range.end - tag->range.begin);
        size +=
            kSvgElementSize + kSvgAttributeSize * static_cast<std::size_t>(std::count(said.begin(), said.end(), '='));
        if (size > kSvgLargestTree)
            tags.fail(tag->range.begin, "more than a million elements or attributes",
                      "a smaller picture, or parts of it");
    }
    if (size == 0)
        tags.fail(0, "no element", "a picture, <svg>");
}

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
    checkMarkup(m_text, file);
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
