#include "formats/svg/SvgColours.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "document/text/Capitals.h"
#include "formats/svg/SvgNumbers.h"

namespace holdfast::formats {
namespace {

constexpr std::array<std::pair<std::string_view, std::uint32_t>, 20> kColourNames = {
    {{"BLACK", 0x000000},  {"SILVER", 0xC0C0C0}, {"GRAY", 0x808080},   {"GREY", 0x808080},    {"WHITE", 0xFFFFFF},
     {"MAROON", 0x800000}, {"RED", 0xFF0000},    {"PURPLE", 0x800080}, {"FUCHSIA", 0xFF00FF}, {"GREEN", 0x008000},
     {"LIME", 0x00FF00},   {"OLIVE", 0x808000},  {"YELLOW", 0xFFFF00}, {"NAVY", 0x000080},    {"BLUE", 0x0000FF},
     {"TEAL", 0x008080},   {"AQUA", 0x00FFFF},   {"CYAN", 0x00FFFF},   {"MAGENTA", 0xFF00FF}, {"ORANGE", 0xFFA500}}};

std::optional<std::uint32_t> hexColour(std::string_view digits) {
    std::string all(digits);
    if (all.size() == 3)
        all = {all[0], all[0], all[1], all[1], all[2], all[2]};
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(all.data(), all.data() + all.size(), value, 16);
    if (all.size() != 6 || error != std::errc() || end != all.data() + all.size())
        return std::nullopt;
    return value;
}

/// Three parts between blanks or commas, of 255 or in percent.
std::optional<std::uint32_t> mixedColour(std::string_view parts) {
    SvgNumbers numbers(parts);
    std::uint32_t value = 0;
    for (int i = 0; i < 3; ++i) {
        if (!numbers.atNumber())
            return std::nullopt;
        const double part = numbers.number();
        const double share = numbers.word() == "%" ? part * 2.55 : part;
        value = value << 8U | static_cast<std::uint32_t>(std::lround(std::clamp(share, 0.0, 255.0)));
    }
    return numbers.atEnd() ? std::optional(value) : std::nullopt;
}

std::optional<std::uint32_t> namedColour(std::string_view name) {
    const std::string capitals = inCapitals(name);
    for (const auto& [known, value] : kColourNames)
        if (known == capitals)
            return value;
    return std::nullopt;
}

}  // namespace

std::optional<Colour> svgColour(std::string_view text) {
    std::optional<std::uint32_t> value;
    if (text.starts_with('#'))
        value = hexColour(text.substr(1));
    else if (text.starts_with("rgb(") && text.ends_with(')'))
        value = mixedColour(text.substr(4, text.size() - 5));
    else
        value = namedColour(text);
    if (!value)
        return std::nullopt;
    return Colour{Colour::Kind::rgb, *value};
}

}  // namespace holdfast::formats
