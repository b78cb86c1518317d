#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "formats/Uses.h"
#include "geometry/Affine.h"

namespace holdfast::formats {

/// A window of the plane that a picture shows.
struct SvgBox {
    Vec2 corner, size;
};

/// The attribute viewBox, or nothing where there is none. SvgFault where it is none of positive size.
std::optional<SvgBox> svgViewBox(pugi::xml_node node);

/// The transform that puts one box into another as the attribute preserveAspectRatio of the element says.
Affine svgFit(const SvgBox& shown, const SvgBox& into, std::string_view aspect);

/// What the outermost element says of the size of a picture.
struct SvgPage {
    Affine toDrawing;   ///< from its coordinates to those of the drawing, whose y looks upwards from the lower edge
    std::string unit;   ///< of the drawing: mm, cm or in, whichever the picture is measured in
    Vec2 size;          ///< of what it shows, in its own coordinates: what percentages are of
    bool isMeasured{};  ///< false: it says no unit of length
};
SvgPage svgPage(pugi::xml_node root);

}  // namespace holdfast::formats
