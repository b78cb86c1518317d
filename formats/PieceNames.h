#pragma once

#include <optional>
#include <string_view>

#include "formats/Uses.h"

namespace holdfast::formats {

/// What an entity was made of, which tells by its name: g3_2 is a piece or copy of g3, g3_2_4 one of that. `find`
/// answers a name with what is known under it, as an optional; the longest name that is known counts.
template <class Find>
auto originByName(std::string_view name, const Find& find) -> decltype(find(name)) {
    for (std::size_t bar = name.rfind('_'); bar != std::string_view::npos; bar = name.rfind('_')) {
        if (name.find_first_not_of("0123456789", bar + 1) != std::string_view::npos)
            break;
        name = name.substr(0, bar);
        if (auto found = find(name))
            return found;
    }
    return std::nullopt;
}

}  // namespace holdfast::formats
