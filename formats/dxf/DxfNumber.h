#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

#include "formats/Uses.h"

namespace holdfast::formats {

/// The number that a group's value is, without blanks around it. It may begin with a plus sign, which some programs
/// write. None where anything else stands there.
template <class Number>
std::optional<Number> numberIn(std::string_view text) {
    if (text.starts_with('+'))
        text.remove_prefix(1);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

}  // namespace holdfast::formats
