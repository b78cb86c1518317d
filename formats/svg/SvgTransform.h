#pragma once

#include <string_view>

#include "formats/Uses.h"
#include "geometry/Affine.h"

namespace holdfast::formats {

/// The transform that a list such as "translate(10 20) rotate(45)" says, the last of it done first. Throws SvgFault.
Affine svgTransform(std::string_view text);

/// `inner` and then `outer`; SvgFault where that is beyond any drawing.
Affine svgChained(const Affine& outer, const Affine& inner);

}  // namespace holdfast::formats
