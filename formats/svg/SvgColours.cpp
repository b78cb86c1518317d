#include "formats/svg/SvgColours.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "document/text/Capitals.h"
#include "formats/svg/SvgColourNames.h"
#include "formats/svg/SvgNumbers.h"

namespace holdfast::formats {
namespace {

static_assert(std::ranges::is_sorted(kSvgColourNames, {}, &std::pair<std::string_view, std::uint32_t>::first));

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
    const auto* const found = std::ranges::lower_bound(kSvgColourNames, std::string_view(capitals), {},
                                                       &std::pair<std::string_view, std::uint32_t>::first);
    return found != kSvgColourNames.end() && found->first == capitals ? std::optional(found->second) : std::nullopt;
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
