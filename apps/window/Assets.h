#pragma once

#include <span>
#include <string_view>

#include "apps/window/Uses.h"

namespace holdfast::window {

/// A file of the page, as it stands in the program.
struct Asset {
    std::string_view name, type, text;
};

/// All of them, by name.
std::span<const Asset> assets();

/// Null for a name that none has.
const Asset* assetNamed(std::string_view name);

}  // namespace holdfast::window
