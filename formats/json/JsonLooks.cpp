#include "formats/json/JsonLooks.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace holdfast::formats {
namespace {

constexpr std::string_view kLayerFields[] = {"name", "colour", "linetype", "weight", "off", "frozen", "locked"};
constexpr std::pair<int, std::string_view> kWeightTexts[] = {
    {kWeightByLayer, "by_layer"}, {kWeightByBlock, "by_block"}, {kWeightDefault, "default"}};
constexpr double kWeightsInUnit = 100.0;  // weights are hundredths of a millimetre

Colour readColour(const JsonView& view) {
    constexpr const char* expected =
        "a colour: a number from 1 to 255 of the palette, \"#rrggbb\", \"by_layer\" or \"by_block\"";
    if (!view.isText())
        return {Colour::Kind::index, static_cast<std::uint32_t>(view.integer())};
    const std::string text = view.text();
    if (text == "by_layer")
        return {};
    if (text == "by_block")
        return {Colour::Kind::byBlock, 0};
    std::uint32_t value = 0;
    const char *begin = text.data() + 1, *end = text.data() + text.size();
    if (text.size() != 7 || text[0] != '#' || std::from_chars(begin, end, value, 16).ptr != end)
        view.failAs(expected);
    return {Colour::Kind::rgb, value};
}

int readWeight(const JsonView& view) {
    if (!view.isText())
        return static_cast<int>(std::lround(std::clamp(view.number(), -1e6, 1e6) * kWeightsInUnit));
    for (const auto& [weight, text] : kWeightTexts)
        if (view.text() == text)
            return weight;
    view.failAs("a width in millimetres, \"by_layer\", \"by_block\" or \"default\"");
}

std::string textIn(const JsonView& view, std::string_view key) {
    const auto member = view.find(key);
    return member ? member->text() : std::string();
}

}  // namespace

SharedLook readLook(const JsonView& entity) {
    Look look;
    look.layer = textIn(entity, "layer");
    if (const auto colour = entity.find("colour"))
        look.colour = readColour(*colour);
    look.linetype = textIn(entity, "linetype");
    if (const auto weight = entity.find("weight"))
        look.weight = readWeight(*weight);
    look.visible = flagOr(entity, "visible", true);
    return SharedLook(std::move(look));
}

Layer readLayer(const JsonView& view) {
    view.allowOnly(kLayerFields);
    Layer layer;
    layer.name = view.at("name").text();
    if (const auto colour = view.find("colour"))
        layer.colour = readColour(*colour);
    layer.linetype = textIn(view, "linetype");
    if (const auto weight = view.find("weight"))
        layer.weight = readWeight(*weight);
    layer.isOff = flagOr(view, "off", false);
    layer.isFrozen = flagOr(view, "frozen", false);
    layer.isLocked = flagOr(view, "locked", false);
    return layer;
}

std::string colourText(const Colour& colour) {
    constexpr std::string_view digits = "0123456789abcdef";
    if (colour.kind != Colour::Kind::rgb)
        return colour.kind == Colour::Kind::byBlock ? "by_block" : "by_layer";
    std::string text = "#";
    for (const unsigned shift : {20U, 16U, 12U, 8U, 4U, 0U})
        text += digits[(colour.value >> shift) & 15U];
    return text;
}

std::string_view weightText(int weight) {
    for (const auto& [known, text] : kWeightTexts)
        if (known == weight)
            return text;
    return {};
}

}  // namespace holdfast::formats
