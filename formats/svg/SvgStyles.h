#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/Uses.h"
#include "formats/svg/SvgTree.h"

namespace holdfast::formats {

/// What elements say of their looks: in attributes, in their style, and in the style sheets of the picture as far as
/// these choose by a kind, a class or an id alone.
class SvgStyles {
public:
    explicit SvgStyles(const SvgTree& tree);

    /// What the element itself says of a property; empty where it says nothing.
    std::string_view value(pugi::xml_node node, const char* property) const;

    /// The choices of rules that were passed over, as far as one would read them: "g > path", "@media".
    const std::vector<std::string>& passedOver() const { return m_passedOver; }

private:
    /// By the name of the property; of two rules that choose alike the later one is heard.
    struct Said {
        std::string value;
        int order = 0;
    };
    using Declarations = std::unordered_map<std::string, Said>;

    void read(pugi::xml_node node);
    void readSheet(std::string_view sheet);
    void passOver(std::string_view choice);
    void addRule(std::string_view choice, std::string_view declarations);
    const Said* find(const std::string& choice, const std::string& property) const;
    const Said* inClasses(std::string_view classes, const std::string& property) const;

    const SvgTree& m_tree;
    std::unordered_map<std::string, Declarations> m_rules;  // by choice: "path", ".cut", "#rim", "*"
    std::vector<std::string> m_passedOver;
    int m_order = 0;
};

}  // namespace holdfast::formats
