#include "formats/dxf/DxfLooks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "document/text/Capitals.h"
#include "formats/dxf/DxfNumber.h"
#include "formats/dxf/DxfText.h"

namespace holdfast::formats {
namespace {

constexpr int kByBlock = 0, kByLayer = 256, kHeaviest = 211;

std::optional<int> wholeNumber(const DxfEntity& entity, int code) {
    const DxfGroup* group = entity.find(code);
    return group == nullptr ? std::nullopt : numberIn<int>(group->value);
}

std::string groupText(const DxfEntity& entity, int code) {
    const DxfGroup* group = entity.find(code);
    return group == nullptr ? std::string() : decodedDxfText(group->value, entity.source->codePage());
}

/// Colours of layers that are off count below 0.
Colour colourOf(const DxfEntity& entity, Colour otherwise) {
    constexpr int all = 0xFFFFFF;
    if (const std::optional<int> rgb = wholeNumber(entity, 420))
        return {Colour::Kind::rgb, static_cast<std::uint32_t>(*rgb & all)};
    const int number = std::abs(std::clamp(wholeNumber(entity, 62).value_or(kByLayer), -kByLayer, kByLayer));
    if (number == kByBlock)
        return {Colour::Kind::byBlock, 0};
    return number == kByLayer ? otherwise : Colour{Colour::Kind::index, static_cast<std::uint32_t>(number)};
}

int weightOf(const DxfEntity& entity, int otherwise) {
    const int weight = wholeNumber(entity, 370).value_or(otherwise);
    return weight < kWeightDefault || weight > kHeaviest ? otherwise : weight;
}

}  // namespace

Look lookOf(const DxfEntity& entity) {
    Look look;
    look.layer = groupText(entity, 8);
    if (look.layer == "0")
        look.layer.clear();
    look.colour = colourOf(entity, {});
    look.linetype = groupText(entity, 6);
    if (isCalled(look.linetype, "BYLAYER"))
        look.linetype.clear();
    look.weight = weightOf(entity, kWeightByLayer);
    look.visible = wholeNumber(entity, 60).value_or(0) == 0;
    return look;
}

Layer layerOf(const DxfEntity& entry) {
    constexpr unsigned frozenFlag = 1, lockedFlag = 4;
    const auto flags = static_cast<unsigned>(wholeNumber(entry, 70).value_or(0));
    Layer layer;
    layer.name = groupText(entry, 2);
    layer.colour = colourOf(entry, layer.colour);
    layer.linetype = groupText(entry, 6);
    if (isCalled(layer.linetype, "CONTINUOUS"))
        layer.linetype.clear();
    layer.weight = weightOf(entry, kWeightDefault);
    layer.isOff = wholeNumber(entry, 62).value_or(0) < 0;
    layer.isFrozen = (flags & frozenFlag) != 0;
    layer.isLocked = (flags & lockedFlag) != 0;
    return layer;
}

int paletteNumber(const Colour& colour) {
    if (colour.kind == Colour::Kind::index)
        return static_cast<int>(colour.value);
    if (colour.kind != Colour::Kind::rgb)
        return colour.kind == Colour::Kind::byBlock ? kByBlock : kByLayer;
    constexpr std::array<std::uint32_t, 7> pure = {0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                                   0x0000FF, 0xFF00FF, 0xFFFFFF};
    const auto distance = [&](std::uint32_t other) {
        int sum = 0;
        for (const unsigned shift : {0U, 8U, 16U}) {
            const int way =
                static_cast<int>((colour.value >> shift) & 255U) - static_cast<int>((other >> shift) & 255U);
            sum += way * way;
        }
        return sum;
    };
    const auto nearest = std::min_element(pure.begin(), pure.end(),
                                          [&](std::uint32_t a, std::uint32_t b) { return distance(a) < distance(b); });
    return static_cast<int>(nearest - pure.begin()) + 1;
}

}  // namespace holdfast::formats
