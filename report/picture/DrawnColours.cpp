#include "report/picture/DrawnColours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace holdfast::report {

namespace {

constexpr std::uint32_t kLightPaper = 0xFFFFFF, kDarkPaper = 0x12161E;  // as in the style of pictures

/// What a picture shows has to stand out by (Web Content Accessibility Guidelines 2.1, 1.4.11).
constexpr double kLeastContrast = 3.0;

/// The number for what is black on white paper and white on black.
constexpr std::uint32_t kInk = 7;

double channel(std::uint32_t colour, unsigned shift) {
    return static_cast<double>((colour >> shift) & 0xFFU) / 255.0;
}

double lightPart(double share) {
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

/// Relative luminance as these guidelines define it.
double luminance(std::uint32_t colour) {
    return 0.2126 * lightPart(channel(colour, 16)) + 0.7152 * lightPart(channel(colour, 8)) +
           0.0722 * lightPart(channel(colour, 0));
}

double contrast(std::uint32_t a, std::uint32_t b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

std::uint32_t colourOf(double red, double green, double blue) {
    const auto byte = [](double share) { return static_cast<std::uint32_t>(std::lround(255.0 * share)); };
    return (byte(red) << 16U) | (byte(green) << 8U) | byte(blue);
}

std::uint32_t mixed(std::uint32_t colour, double other, double share) {
    const auto part = [&](unsigned shift) { return (1.0 - share) * channel(colour, shift) + share * other; };
    return colourOf(part(16), part(8), part(0));
}

std::string hex(std::uint32_t colour) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "%06x", colour);
    return text.data();
}

std::string ruleFor(std::uint32_t colour, bool isDark) {
    const std::string name = ".e.k" + hex(colour), shown = "#" + hex(readableOn(isDark, colour));
    return name + " { stroke: " + shown + "; }\n" + name + ".text { stroke: none; fill: " + shown + "; }\n";
}

}  // namespace

std::uint32_t paletteColour(int number) {
    constexpr std::array<std::uint32_t, 10> pure = {0,        0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                                    0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
    constexpr std::array<std::uint32_t, 6> greys = {0x333333, 0x5B5B5B, 0x848484, 0xADADAD, 0xD6D6D6, 0xFFFFFF};
    if (number < 10)
        return pure[static_cast<std::size_t>(std::max(number, 0))];
    if (number >= 250)
        return greys[static_cast<std::size_t>(std::min(number, 255) - 250)];
    // Ten shades of each of 24 hues: five of its brightness, each once more with half of its colour.
    constexpr std::array<double, 5> brightness = {1.0, 165.0 / 255.0, 127.0 / 255.0, 76.0 / 255.0, 38.0 / 255.0};
    const double value = brightness[static_cast<std::size_t>(number % 10 / 2)];
    const double least = number % 2 == 0 ? 0.0 : 0.5 * value;
    const int which = number / 10 - 1;
    const double hue = which / 4.0;  // in sixths of the circle
    const auto part = [&](double from) {
        const double away = std::abs(std::remainder(hue - from, 6.0));
        return least + (value - least) * std::clamp(2.0 - away, 0.0, 1.0);
    };
    return colourOf(part(0.0), part(2.0), part(4.0));
}

std::uint32_t readableOn(bool isDark, std::uint32_t colour) {
    constexpr int steps = 32;
    for (int step = 0; step < steps; ++step)
        if (const std::uint32_t shade = mixed(colour, isDark ? 1.0 : 0.0, static_cast<double>(step) / steps);
            contrast(shade, isDark ? kDarkPaper : kLightPaper) >= kLeastContrast)
            return shade;
    return isDark ? 0xFFFFFF : 0;
}

DrawnColours::DrawnColours(const Document& document) {
    for (const Layer& layer : document.layers)
        m_layers.emplace(layer.name, layer.colour);
}

std::string DrawnColours::classOf(const Look& look) {
    Colour colour = look.colour;
    if (colour.kind == Colour::Kind::byLayer)
        if (const auto layer = m_layers.find(look.layer.empty() ? "0" : look.layer); layer != m_layers.end())
            colour = layer->second;
    if (colour.kind == Colour::Kind::index && colour.value != kInk)
        colour = {Colour::Kind::rgb, paletteColour(static_cast<int>(colour.value))};
    if (colour.kind != Colour::Kind::rgb)
        return {};
    m_used.insert(colour.value);
    return " k" + hex(colour.value);
}

std::string DrawnColours::style() const {
    if (m_used.empty())
        return {};
    std::string light, dark;
    for (const std::uint32_t colour : m_used) {
        light += ruleFor(colour, false);
        dark += ruleFor(colour, true);
    }
    return light + "@media screen and (prefers-color-scheme: dark) {\n" + dark + "}\n";
}

}  // namespace holdfast::report
