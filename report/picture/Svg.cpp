#include "report/picture/Svg.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "document/BlockContents.h"
#include "report/marks/Glyphs.h"
#include "report/page/Assets.h"
#include "report/picture/Frame.h"
#include "report/picture/Markup.h"
#include "report/picture/Picture.h"
#include "report/picture/TextElement.h"

namespace holdfast::report {

using report::attribute;
using report::decimal;

std::string writePicture(const Document& document, const PictureNotes& notes, const PictureOptions& options) {
    const geometry::Box window = report::windowOf(document);
    const report::Frame frame =
        report::trimmed(report::frameAround(window, options.width, options.lowest, options.highest), window, 0.4);
    const std::string width = decimal(frame.width, 2), height = decimal(frame.height, 2);
    report::DrawnColours colours(document);
    report::Crowd crowd{.isAlone = true};
    const bool isCrowd = document.entities.size() + document.constraints.size() > report::kCrowd;
    const std::string body = report::pictureBody({.document = document,
                                                  .notes = notes,
                                                  .frame = frame,
                                                  .ghost = nullptr,
                                                  .overscan = 0.0,
                                                  .marks = options.marks,
                                                  .dimensionLines = options.dimensionLines,
                                                  .names = options.names,
                                                  .memory = nullptr,
                                                  .colours = options.colours ? &colours : nullptr,
                                                  .crowd = isCrowd ? &crowd : nullptr});
    const std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width) +
                            attribute("height", height) + attribute("viewBox", "0 0 " + width + " " + height) +
                            " role=\"img\">\n<title>" + report::escaped(document.name) + "</title>\n<style>\n" +
                            std::string(report::kPictureStyle) + std::string(options.names ? kNameStyle : "") +
                            colours.style() + "</style>\n" + report::glyphSheet() + "<rect class=\"paper\"" +
                            attribute("width", width) + attribute("height", height) + "/>\n";
    return svg + body + "</svg>\n";
}

namespace {

/// Decimals that keep a ten-millionth of a drawing of this size.
int placesFor(double size) {
    return std::clamp(static_cast<int>(std::ceil(7.0 - std::log10(size))), 6, 300);
}

class TrueSize {
public:
    explicit TrueSize(const Document& document) : m_document(document), m_frame(frameOf(document)) {
        const double size = m_frame.window.diagonal();
        m_lineWidth = size / 1000.0;
        m_places = placesFor(size);
    }

    std::string text() const {
        const std::string width = shown(m_frame.width), height = shown(m_frame.height);
        std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", length(m_frame.width)) +
                          attribute("height", length(m_frame.height)) +
                          attribute("viewBox", "0 0 " + width + " " + height) + ">\n<title>" +
                          report::escaped(m_document.name) + "</title>\n<g fill=\"none\" stroke=\"#000000\"" +
                          attribute("stroke-width", shown(m_lineWidth)) + ">\n";
        for (const Entity& entity : m_document.entities)
            svg += element(entity);
        for (const BlockReference& reference : m_document.references)
            forEachShownPart(reference, [&](Entity&& part) { svg += element(part); });
        return svg + "</g>\n</svg>\n";
    }

private:
    static report::Frame frameOf(const Document& document) {
        geometry::Box window = report::windowOf(document);
        if (window.isEmpty())
            window.add(Vec2{});
        const double size = window.diagonal();
        window = window.grownBy(size > 0.0 ? size / 450.0 : 0.5);
        return {window, 1.0, window.width(), window.height()};
    }

    std::string shown(double value) const { return decimal(value, m_places); }

    /// A measure in a unit that SVG has; the others are told in one of those.
    std::string length(double value) const {
        struct Unit {
            std::string_view ours, svg;
            double factor;
        };
        static constexpr std::array<Unit, 6> units{{{"mm", "mm", 1.0},
                                                    {"cm", "cm", 1.0},
                                                    {"in", "in", 1.0},
                                                    {"um", "mm", 0.001},
                                                    {"m", "mm", 1000.0},
                                                    {"ft", "in", 12.0}}};
        for (const Unit& unit : units)
            if (unit.ours == m_document.lengthUnit)
                return decimal(value * unit.factor, placesFor(m_frame.window.diagonal() * unit.factor)) +
                       std::string(unit.svg);
        return shown(value);
    }

    std::string element(const Entity& entity) const {
        if (const auto* text = std::get_if<TextShape>(&entity.shape))
            return report::textElement(
                *text, m_frame,
                attribute("id", entity.id) + " fill=\"#000000\" stroke=\"none\"" + " font-family=\"sans-serif\"",
                m_places);
        if (const auto* point = std::get_if<PointShape>(&entity.shape))
            return dot(m_frame.toPicture(point->position), entity.id);
        const report::Outline outline =
            report::outlineOf(entity.shape, m_frame.window, m_frame.window.diagonal() / 1e5);
        if (outline.strokes.empty())
            return {};
        std::string path =
            "<path" + attribute("id", entity.id) + attribute("d", report::pathData(outline, m_frame, m_places));
        if (entity.construction || entity.fixed)
            path += attribute("stroke", "#888888") +
                    attribute("stroke-dasharray", shown(m_lineWidth * 6) + " " + shown(m_lineWidth * 4));
        return path + "/>\n";
    }

    /// A line without length shows as a dot where its caps are round, and is nothing to cut.
    std::string dot(Vec2 at, const std::string& id) const {
        return "<path" + attribute("id", id) + attribute("d", "M" + shown(at.x) + " " + shown(at.y) + "h0") +
               " stroke-linecap=\"round\"" + attribute("stroke-width", shown(m_lineWidth * 4)) + "/>\n";
    }

    const Document& m_document;
    report::Frame m_frame;
    double m_lineWidth = 0.0;
    int m_places = 6;
};

}  // namespace

std::string writeTrueSizeSvg(const Document& document) {
    return TrueSize(document).text();
}

}  // namespace holdfast::report
