#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace holdfast::report::test {

/// One element of an XML text.
struct XmlNode {
    std::string name;
    std::map<std::string, std::string> attributes;  ///< with entities resolved
    std::vector<XmlNode> children;
    std::string text;  ///< all character data directly inside, entities resolved

    /// The value of an attribute, or an empty text.
    std::string operator[](const std::string& attribute) const;
    bool hasClass(std::string_view wanted) const;
    /// Itself and everything below it, in document order, that has this element name (any name: empty).
    std::vector<const XmlNode*> all(std::string_view elementName = {}) const&;
    std::vector<const XmlNode*> all(std::string_view elementName = {}) const&& = delete;
    std::vector<const XmlNode*> withClass(std::string_view wanted) const&;
    std::vector<const XmlNode*> withClass(std::string_view wanted) const&& = delete;
    /// The text of this element and of everything below it.
    std::string allText() const;
};

/// Not well-formed: what() says what was found and at which byte.
struct XmlError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The root element. Checks what makes XML well-formed and what our writers promise beside: one root, tags in pairs,
/// attributes quoted and once each, entities known, no raw special characters, no control characters, valid UTF-8.
/// CDATA sections, comments and one DOCTYPE are understood.
XmlNode parseXml(std::string_view text);

}  // namespace holdfast::report::test
