#pragma once

#include <string_view>

#include "formats/Uses.h"
#include "formats/svg/SvgPen.h"

namespace holdfast::formats {

/// Draws what the attribute d of a path says. Throws SvgFault.
void drawSvgPath(std::string_view data, SvgPen& pen);

}  // namespace holdfast::formats
