#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "document/Document.h"
#include "report/Uses.h"

namespace holdfast::report {

/// The colours that a drawing says, its entities or their layers, as classes of a picture's elements: light enough on
/// dark paper and dark enough on light paper to be seen. Borrows the drawing.
class DrawnColours {
public:
    /// Cost: linear in the layers.
    explicit DrawnColours(const Document& document);

    /// The class of an element that is drawn in this look, with a blank in front; empty for what has the colour of ink.
    std::string classOf(const Look& look);
    /// Rules for all classes that were asked for. They stand behind those of the picture.
    std::string style() const;

private:
    std::unordered_map<std::string_view, Colour> m_layers;
    std::set<std::uint32_t> m_used;
};

/// Number 1 to 255 of the palette that drawings count colours in, 0xRRGGBB.
std::uint32_t paletteColour(int number);

/// The nearest shade of a colour that stands out from light or from dark paper, as what a picture shows has to.
std::uint32_t readableOn(bool isDark, std::uint32_t colour);

}  // namespace holdfast::report
