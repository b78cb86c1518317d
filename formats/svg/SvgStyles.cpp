#include "formats/svg/SvgStyles.h"

#include <algorithm>
#include <utility>

namespace holdfast::formats {
namespace {

/// Rules that are told one by one.
constexpr std::size_t kMostPassedOver = 100;

constexpr std::string_view kStyleBlanks = " \t\r\n\f";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kStyleBlanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(kStyleBlanks) + 1 - begin);
}

/// Calls back with the parts of a text between signs, trimmed, of those that are not empty.
template <class Take>
void forEachPart(std::string_view text, std::string_view signs, Take&& take) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(signs), text.size());
        if (const std::string_view part = trimmed(text.substr(0, end)); !part.empty())
            take(part);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

/// "fill: none" as a pair; "!important" says nothing here.
std::pair<std::string_view, std::string_view> declarationIn(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return {};
    std::string_view value = text.substr(colon + 1);
    value = trimmed(value.substr(0, value.find('!')));
    return {trimmed(text.substr(0, colon)), value};
}

std::string withoutComments(std::string_view sheet) {
    std::string text;
    while (!sheet.empty()) {
        const std::size_t begin = std::min(sheet.find("/*"), sheet.size());
        text += sheet.substr(0, begin);
        const std::size_t end = begin == sheet.size() ? begin : sheet.find("*/", begin + 2);
        sheet.remove_prefix(end == std::string_view::npos ? sheet.size() : std::min(end + 2, sheet.size()));
    }
    return text;
}

/// The place behind the } that closes the { at a place, or the end.
std::size_t blockEnd(std::string_view sheet, std::size_t at) {
    int depth = 0;
    for (; at < sheet.size(); ++at) {
        depth += sheet[at] == '{' ? 1 : sheet[at] == '}' ? -1 : 0;
        if (depth == 0)
            return at + 1;
    }
    return sheet.size();
}

/// One kind, class or id and no more.
bool isPlainChoice(std::string_view choice) {
    if (choice == "*")
        return true;
    if (choice.starts_with('.') || choice.starts_with('#'))
        choice.remove_prefix(1);
    return !choice.empty() && choice.find_first_of(" \t\r\n\f.#:>+~[]*@()\"'") == std::string_view::npos;
}

}  // namespace

SvgStyles::SvgStyles(const SvgTree& tree) : m_tree(tree) {
    read(tree.root());
}

void SvgStyles::read(pugi::xml_node node) {
    if (m_tree.nameOf(node) == "style") {
        std::string sheet;
        for (const pugi::xml_node text : node.children())
            sheet += text.value();
        readSheet(withoutComments(sheet));
        return;
    }
    for (const pugi::xml_node child : node.children())
        read(child);
}

void SvgStyles::readSheet(std::string_view sheet) {
    while (!(sheet = trimmed(sheet)).empty()) {
        const std::size_t brace = std::min(sheet.find_first_of("{;"), sheet.size());
        const std::string_view choices = trimmed(sheet.substr(0, brace));
        const bool hasBlock = brace < sheet.size() && sheet[brace] == '{';
        const std::size_t end = hasBlock ? blockEnd(sheet, brace) : std::min(brace + 1, sheet.size());
        if (choices.starts_with('@'))
            passOver(choices.substr(0, choices.find_first_of(kStyleBlanks)));
        else if (hasBlock)
            forEachPart(choices, ",",
                        [&](std::string_view choice) { addRule(choice, sheet.substr(brace + 1, end - brace - 1)); });
        sheet.remove_prefix(end);
    }
}

void SvgStyles::passOver(std::string_view choice) {
    if (m_passedOver.size() < kMostPassedOver)
        m_passedOver.emplace_back(choice);
}

void SvgStyles::addRule(std::string_view choice, std::string_view declarations) {
    if (!isPlainChoice(choice))
        return passOver(choice);
    Declarations& rule = m_rules[std::string(choice)];
    ++m_order;
    forEachPart(declarations, ";}", [&](std::string_view part) {
        if (const auto [property, value] = declarationIn(part); !value.empty())
            rule[std::string(property)] = {std::string(value), m_order};
    });
}

const SvgStyles::Said* SvgStyles::find(const std::string& choice, const std::string& property) const {
    const auto rule = m_rules.find(choice);
    if (rule == m_rules.end())
        return nullptr;
    const auto said = rule->second.find(property);
    return said == rule->second.end() ? nullptr : &said->second;
}

const SvgStyles::Said* SvgStyles::inClasses(std::string_view classes, const std::string& property) const {
    const Said* latest = nullptr;
    forEachPart(classes, kStyleBlanks, [&](std::string_view name) {
        const Said* said = find("." + std::string(name), property);
        if (said != nullptr && (latest == nullptr || said->order > latest->order))
            latest = said;
    });
    return latest;
}

std::string_view SvgStyles::value(pugi::xml_node node, const char* property) const {
    std::string_view own;
    forEachPart(node.attribute("style").value(), ";", [&](std::string_view part) {
        if (const auto [name, value] = declarationIn(part); name == property)
            own = value;
    });
    if (!own.empty())
        return own;
    if (!m_rules.empty()) {
        const std::string name = property;
        const Said* said = find("#" + std::string(node.attribute("id").value()), name);
        if (said == nullptr)
            said = inClasses(node.attribute("class").value(), name);
        if (said == nullptr)
            said = find(std::string(m_tree.nameOf(node)), name);
        if (said == nullptr)
            said = find("*", name);
        if (said != nullptr)
            return said->value;
    }
    return trimmed(node.attribute(property).value());
}

}  // namespace holdfast::formats
