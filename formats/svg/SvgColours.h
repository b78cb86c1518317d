#pragma once

#include <optional>
#include <string_view>

#include "document/Look.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// "#f00", "#ff0000", "rgb(255, 0, 0)", "rgb(100%, 0%, 0%)" or one of the names of colours;
/// nothing for any other text.
std::optional<Colour> svgColour(std::string_view text);

}  // namespace holdfast::formats
