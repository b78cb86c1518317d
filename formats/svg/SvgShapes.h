#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "formats/Uses.h"
#include "formats/svg/SvgPen.h"

namespace holdfast::formats {

/// What an element of this name draws, in its own coordinates; nothing for what is no shape. `window` is what
/// percentages are of. Throws SvgFault.
std::optional<SvgPen::Drawn> svgShapes(std::string_view name, pugi::xml_node node, Vec2 window);

}  // namespace holdfast::formats
