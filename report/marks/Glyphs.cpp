#include "report/marks/Glyphs.h"

#include <array>

namespace holdfast::report {

namespace {

/// A sign by the name that the table of kinds gives it.
struct Glyph {
    std::string_view name;
    std::string_view drawing;
};

// clang-format off
constexpr std::array kGlyphs{
    Glyph{"coincident",
          R"(<path d="M-5.2 3.8L-1.6 1.1M5.2 3.8L1.6 1.1M0 -2.4V-5.4"/><circle class="dot" r="2.1"/>)"},
    Glyph{"concentric",
          R"(<circle r="4.8"/><circle r="2.1"/>)"},
    Glyph{"on-curve",
          R"(<path d="M-5.4 3.6C-2.8 -1.4 1.6 -2.8 5.4 -3"/><circle class="dot" cx="-.6" cy="-1.3" r="2.1"/>)"},
    Glyph{"fixed",
          R"(<path d="M0 -5.4V.6M-5 .8H5M-4.4 4.8L-2 1.2M-.6 4.8L1.8 1.2M3.2 4.8L5.4 1.4"/>)"},
    Glyph{"horizontal",
          R"(<path class="bold" d="M-4.6 0H4.6"/>)"},
    Glyph{"vertical",
          R"(<path class="bold" d="M0 -4.6V4.6"/>)"},
    Glyph{"parallel",
          R"(<path d="M-4.2 4.4L.2 -4.4M-.2 4.4L4.2 -4.4"/>)"},
    Glyph{"perpendicular",
          R"(<path d="M-4.8 4.2H4.8M0 4.2V-4.8"/>)"},
    Glyph{"collinear",
          R"(<path d="M-5.2 4L-1.7 1.3M1.7 -1.3L5.2 -4"/><circle class="dot" r=".9"/>)"},
    Glyph{"tangent",
          R"(<circle cx="-.6" cy="1.5" r="3.3"/><path d="M-5 -3.2H5.2"/>)"},
    Glyph{"equal",
          R"(<path d="M-4.2 -1.9H4.2M-4.2 1.9H4.2"/>)"},
    Glyph{"symmetric",
          R"(<path d="M0 -5.2V-3.2M0 -1V1M0 3.2V5.2M-5.4 -3L-2.1 0L-5.4 3ZM5.4 -3L2.1 0L5.4 3Z"/>)"},
    Glyph{"midpoint",
          R"(<path d="M-5.4 3.4H5.4"/><path d="M0 3.2L-3.4 -2.8H3.4Z"/>)"},
    Glyph{"internal",
          R"(<ellipse rx="5.4" ry="3.4"/><path d="M-2.4 0H2.4M0 -1.4V1.4"/>)"},
    Glyph{"smooth",
          R"(<path d="M-5.4 3.6C-1.6 3.6 -1.6 -3.6 5.4 -3.6"/><circle class="dot" cx="-1" cy="0" r="1.3"/>)"},
    Glyph{"composite",
          R"(<rect x="-4.8" y="-4.8" width="6.6" height="6.6" rx="1"/><path d="M4 -2.2H4.8V4.8H-2.2V4"/>)"},
};
// clang-format on

/// Dimensions show their value in a picture; only texts and tables need a sign for their kind.
constexpr std::array kDimensionPaths{
    Glyph{"length", "M-6 -4V4M6 -4V4M-5 0H5M-5 0L-2.6 -1.8M-5 0L-2.6 1.8M5 0L2.6 -1.8M5 0L2.6 1.8"},
    Glyph{"radius", "M5.5 0A5.5 5.5 0 1 0 -5.5 0A5.5 5.5 0 1 0 5.5 0M0 0L3.9 -3.9M3.9 -3.9V-1.2M3.9 -3.9H1.2"},
    Glyph{"diameter", "M4.5 0A4.5 4.5 0 1 0 -4.5 0A4.5 4.5 0 1 0 4.5 0M-6 6L6 -6"},
    Glyph{"angle", "M5.5 5H-5.5L3.6 -5.5M1.4 5A7 7 0 0 0 -1 -.2"},
};

template <class Glyphs>
const Glyph* glyphOf(const Glyphs& glyphs, ConstraintType type) {
    for (const Glyph& glyph : glyphs)
        if (glyph.name == traitsOf(type).sign)
            return &glyph;
    return nullptr;
}

std::string use(std::string_view name) {
    return "<use href=\"#hf-" + std::string(name) + "\"/>";
}

/// The signs on points are seen by the dozen, hence smaller and plainer.
constexpr std::string_view kSpots = R"(<circle id="hf-spot-coincident" class="dot" r="2.1"/>
<circle id="hf-spot-on-curve" class="ring" r="2.3"/>
<g id="hf-spot-concentric"><circle class="ring" r="4.2"/><circle class="dot" r="1.3"/></g>
<path id="hf-spot-midpoint" class="ring" d="M0 -3.2L3.2 2.4H-3.2Z"/>
)";

}  // namespace

std::string glyphSheet() {
    std::string sheet = "<defs>\n";
    for (const Glyph& glyph : kGlyphs)
        sheet +=
            "<g id=\"hf-" + std::string(glyph.name) + "\" class=\"glyph\">" + std::string(glyph.drawing) + "</g>\n";
    return sheet + std::string(kSpots) + "</defs>\n";
}

std::string glyphUse(ConstraintType type) {
    const Glyph* glyph = glyphOf(kGlyphs, type);
    return glyph == nullptr ? std::string() : use(glyph->name);
}

std::string spotUse(ConstraintType type) {
    const Glyph* glyph = glyphOf(kGlyphs, type);
    return glyph == nullptr ? std::string() : use("spot-" + std::string(glyph->name));
}

std::string inlineGlyph(ConstraintType type) {
    const Glyph* dimension = glyphOf(kDimensionPaths, type);
    return R"(<svg class="sign" viewBox="-8 -8 16 16" aria-hidden="true">)" +
           (dimension == nullptr ? glyphUse(type)
                                 : R"(<path class="glyph" d=")" + std::string(dimension->drawing) + "\"/>") +
           "</svg>";
}

}  // namespace holdfast::report
