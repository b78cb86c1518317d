#include <algorithm>
#include <array>
#include <charconv>

#include "document/Names.h"
#include "editing/text/Parse.h"

namespace holdfast::editing {

namespace {

/// Words that stand where a name could stand.
constexpr std::array<std::string_view, 5> kKeywords{"about", "from", "by", "corner", "segments"};

bool needsQuotes(std::string_view name) {
    // A dot parts an entity from its place.
    return name.empty() || name.find_first_of(" \t\r\n\".") != std::string_view::npos ||
           std::find(kKeywords.begin(), kKeywords.end(), name) != kKeywords.end();
}

std::string escaped(char c) {
    switch (c) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return {c};
    }
}

std::string textOf(const std::string& name) {
    if (!needsQuotes(name))
        return name;
    std::string text = "\"";
    for (const char c : name)
        text += escaped(c);
    return text + "\"";
}

std::string textOf(const Name& name) {
    return textOf(name.value);
}

/// The shortest decimal text that reads back as the very same number.
std::string textOf(double number) {
    std::array<char, 32> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), result.ptr};
}

std::string textOf(int number) {
    return std::to_string(number);
}

std::string textOf(Vec2 point) {
    return textOf(point.x) + "," + textOf(point.y);
}

std::string textOf(CurveEnd end) {
    return end == CurveEnd::start ? "start" : "end";
}

std::string textOf(const std::vector<Name>& names) {
    std::string text;
    for (const Name& name : names)
        text += (text.empty() ? "" : " ") + textOf(name);
    return text;
}

std::string textOf(const Sourced<Place>& place) {
    return textOf(place.value.entity) + "." + placeText(place.value);
}

std::string textOf(const Coordinate& coordinate) {
    return (coordinate.axis == Coordinate::Axis::x ? "x " : "y ") + textOf(coordinate.value);
}

struct Writer {
    std::string operator()(const Break& e) const {
        return "break " + textOf(e.entity) + " at " + textOf(e.from) + (e.to ? " to " + textOf(*e.to) : "");
    }
    std::string operator()(const Trim& e) const {
        return "trim " + textOf(e.entity) + " at " + textOf(e.at) + " by " + textOf(e.by);
    }
    std::string operator()(const Extend& e) const {
        return "extend " + textOf(e.entity) + " " + textOf(e.end) + " to " + textOf(e.to);
    }
    std::string operator()(const Fillet& e) const {
        return "fillet " + textOf(e.first) + " " + textOf(e.second) + radius(e.radius) +
               (e.picks ? " at " + textOf(e.picks->first) + " " + textOf(e.picks->second) : "");
    }
    std::string operator()(const FilletCorner& e) const {
        return "fillet " + textOf(e.polyline) + " corner " + textOf(e.corner) + radius(e.radius);
    }
    std::string operator()(const FilletSegments& e) const {
        return "fillet " + textOf(e.polyline) + " segments " + textOf(e.from) + " " + textOf(e.to) + radius(e.radius);
    }
    std::string operator()(const Join& e) const { return "join " + textOf(e.entities); }
    std::string operator()(const Lengthen& e) const {
        return "lengthen " + textOf(e.entity) + " " + textOf(e.end) + (e.way == Lengthen::Way::by ? " by " : " to ") +
               textOf(e.length);
    }
    std::string operator()(const Stretch& e) const {
        return "stretch window " + textOf(e.first) + " " + textOf(e.second) + " by " + textOf(e.by);
    }
    std::string operator()(const Mirror& e) const {
        return "mirror " + textOf(e.entities) + " about " + textOf(e.first) + " " + textOf(e.second) +
               (e.keep ? " keep" : "");
    }
    std::string operator()(const Align& e) const {
        const std::string start = "align " + textOf(e.entities) + " from " + textOf(e.from);
        if (!e.direction)
            return start + " to " + textOf(e.to);
        return start + " " + textOf(e.direction->from) + " to " + textOf(e.to) + " " + textOf(e.direction->to) +
               (e.direction->scale ? " scale" : "");
    }
    std::string operator()(const Rotate& e) const {
        return "rotate " + textOf(e.entities) + " about " + textOf(e.about) + " by " + textOf(e.degrees);
    }
    std::string operator()(const Drag& e) const {
        return "drag " + std::visit([](const auto& held) { return textOf(held); }, e.held) + " by " + textOf(e.by) +
               (e.steps == 1 ? "" : " steps " + textOf(e.steps.value));
    }
    std::string operator()(const Set& e) const {
        return "set " + textOf(e.entity) + " " + std::string(wordOf(e.property.value)) +
               (isListed(e.property.value) ? " " + textOf(e.index.value) : "") + " " +
               std::visit([](const auto& value) { return textOf(value); }, e.value);
    }
    std::string operator()(const Undo&) const { return "undo"; }
    std::string operator()(const Redo&) const { return "redo"; }

    static std::string radius(const Sourced<double>& value) { return " radius " + textOf(value.value); }
};

}  // namespace

std::string toText(const Edit& edit) {
    return std::visit(Writer(), edit);
}

}  // namespace holdfast::editing
