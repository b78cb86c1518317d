#include "document/Names.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <vector>

namespace holdfast::document {
namespace {

constexpr std::array<std::string_view, 12> kEntityTypes = {"line",   "arc",   "circle", "ellipse", "elliptical_arc",
                                                           "spline", "point", "xline",  "ray",     "polyline",
                                                           "text",   "mtext"};
static_assert(kEntityTypes.size() == std::variant_size_v<Shape> + 1, "texts have two names");

/// Text before the index, text behind it.
struct PlaceName {
    PlaceKind kind;
    std::string_view head, tail;

    constexpr bool isIndexed() const { return head.ends_with(':'); }
};

// clang-format off
constexpr PlaceName kPlaces[] = {
    {PlaceKind::whole,         "whole",    ""},
    {PlaceKind::start,         "start",    ""},
    {PlaceKind::end,           "end",      ""},
    {PlaceKind::centre,        "centre",   ""},
    {PlaceKind::mid,           "mid",      ""},
    {PlaceKind::control,       "control:", ""},
    {PlaceKind::segment,       "segment:", ""},
    {PlaceKind::segmentStart,  "segment:", ".start"},
    {PlaceKind::segmentEnd,    "segment:", ".end"},
    {PlaceKind::segmentMid,    "segment:", ".mid"},
    {PlaceKind::segmentCentre, "segment:", ".centre"},
};
// clang-format on
static_assert(std::size(kPlaces) == static_cast<std::size_t>(PlaceKind::segmentCentre) + 1);

/// A place index: digits without sign and without needless zeros.
std::optional<int> parseIndex(std::string_view digits) {
    if (digits.empty() || digits.front() == '-' || (digits.size() > 1 && digits.front() == '0'))
        return std::nullopt;
    int index = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return index;
}

std::optional<Place> parseAs(const PlaceName& name, std::string_view text) {
    if (!name.isIndexed())
        return text == name.head ? std::optional<Place>(Place{{}, name.kind, 0}) : std::nullopt;
    if (text.size() <= name.head.size() + name.tail.size() || !text.starts_with(name.head) ||
        !text.ends_with(name.tail))
        return std::nullopt;
    const auto digits = text.substr(name.head.size(), text.size() - name.head.size() - name.tail.size());
    const std::optional<int> index = parseIndex(digits);
    if (!index)
        return std::nullopt;
    return Place{{}, name.kind, *index};
}

}  // namespace

std::string_view typeName(const Shape& shape) {
    const auto* text = std::get_if<TextShape>(&shape);
    return kEntityTypes[shape.index() + (text != nullptr && text->multiline ? 1 : 0)];
}

std::string_view typeName(ConstraintType type) {
    return traitsOf(type).name;
}

std::optional<ConstraintType> constraintTypeNamed(std::string_view name) {
    for (const ConstraintTraits& kind : constraintKinds()) {
        if (kind.name == name)
            return kind.type;
    }
    return std::nullopt;
}

std::span<const std::string_view> entityTypeNames() {
    return kEntityTypes;
}

std::span<const std::string_view> constraintTypeNames() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> all;
        for (const ConstraintTraits& kind : constraintKinds())
            all.push_back(kind.name);
        return all;
    }();
    return names;
}

bool isDimension(ConstraintType type) {
    return traitsOf(type).isDimension();
}

bool ownsMembers(ConstraintType type) {
    return traitsOf(type).ownsMembers;
}

std::string placeText(const Place& place) {
    const PlaceName& name = kPlaces[static_cast<std::size_t>(place.kind)];
    std::string text(name.head);
    if (name.isIndexed())
        text.append(std::to_string(place.index)).append(name.tail);
    return text;
}

std::optional<Place> parsePlace(std::string_view text) {
    for (const PlaceName& name : kPlaces) {
        if (std::optional<Place> place = parseAs(name, text))
            return place;
    }
    return std::nullopt;
}

std::string spokenPlace(const Place& place) {
    return place.kind == PlaceKind::whole ? place.entity : place.entity + "." + placeText(place);
}

}  // namespace holdfast::document
