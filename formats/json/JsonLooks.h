#pragma once

#include <array>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/json/JsonView.h"

namespace holdfast::formats {

/// The fields of an entity that say how it is drawn.
inline constexpr std::array<std::string_view, 5> kLookFields{"layer", "colour", "linetype", "weight", "visible"};

SharedLook readLook(const JsonView& entity);
Layer readLayer(const JsonView& view);

/// "#102030", or "by_layer" and "by_block"; numbers of a palette are no texts.
std::string colourText(const Colour& colour);

/// "by_layer", "by_block", "default"; empty for a width.
std::string_view weightText(int weight);

}  // namespace holdfast::formats
