#include "document/Names.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace holdfast::document {
namespace {

constexpr std::array<std::string_view, 12> kEntityTypes = {"line",   "arc",   "circle", "ellipse", "elliptical_arc",
                                                           "spline", "point", "xline",  "ray",     "polyline",
                                                           "text",   "mtext"};
static_assert(kEntityTypes.size() == std::variant_size_v<Shape> + 1, "texts have two names");

constexpr std::array<std::string_view, 22> kConstraintTypes = {
    "coincident", "concentric", "point_on_curve", "fixed",     "horizontal", "vertical", "parallel",  "perpendicular",
    "collinear",  "tangent",    "equal",          "symmetric", "midpoint",   "internal", "g2_smooth", "composite",
    "distance",   "distance_x", "distance_y",     "radius",    "diameter",   "angle"};
static_assert(kConstraintTypes.size() == static_cast<std::size_t>(ConstraintType::angle) + 1);

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
    return kConstraintTypes[static_cast<std::size_t>(type)];
}

std::optional<ConstraintType> constraintTypeNamed(std::string_view name) {
    for (std::size_t i = 0; i < kConstraintTypes.size(); ++i) {
        if (kConstraintTypes[i] == name)
            return static_cast<ConstraintType>(i);
    }
    return std::nullopt;
}

std::span<const std::string_view> entityTypeNames() {
    return kEntityTypes;
}

std::span<const std::string_view> constraintTypeNames() {
    return kConstraintTypes;
}

bool isDimension(ConstraintType type) {
    return type >= ConstraintType::distance;
}

bool ownsMembers(ConstraintType type) {
    return type == ConstraintType::composite || type == ConstraintType::g2Smooth;
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
