#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>

#include "formats/Uses.h"

namespace holdfast::formats {

/// The elements of a picture. Checked before they become a tree, so that what is meant to fill the memory is refused.
class SvgTree {
public:
    /// Throws DrawingError for what is no picture: not well-formed, with entities of its own, nested deeper or with
    /// more elements than any drawing.
    SvgTree(std::string_view text, const std::string& file);

    pugi::xml_node root() const { return m_tree.document_element(); }
    /// None where nothing has that id.
    pugi::xml_node find(const std::string& id) const;
    /// Without the prefix of the picture's names; empty for text, and for what other programs keep for themselves.
    std::string_view nameOf(pugi::xml_node node) const;
    [[noreturn]] void fail(pugi::xml_node node, std::string found, std::string expected) const;

private:
    void index(pugi::xml_node node);

    std::string m_text;  // in UTF-8
    std::string m_file;
    std::string m_prefix;  // of the picture's names, with its colon
    pugi::xml_document m_tree;
    std::unordered_map<std::string_view, pugi::xml_node> m_byId;
};

/// The deepest that elements may stand in each other, those that are used again included.
inline constexpr std::size_t kSvgDeepest = 256;

}  // namespace holdfast::formats
