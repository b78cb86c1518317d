#include "workbench/report/Svg.h"

#include "workbench/report/Assets.h"
#include "workbench/report/Frame.h"
#include "workbench/report/Glyphs.h"
#include "workbench/report/Markup.h"
#include "workbench/report/Picture.h"

namespace holdfast {

using picture::attribute;
using picture::decimal;

std::string writePicture(const Document& document, const PictureNotes& notes, const PictureOptions& options) {
    const picture::Box window = picture::windowOf(document);
    const picture::Frame frame =
        picture::trimmed(picture::frameAround(window, options.width, options.lowest, options.highest), window, 0.4);
    const std::string width = decimal(frame.width, 2), height = decimal(frame.height, 2);
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width) +
                      attribute("height", height) + attribute("viewBox", "0 0 " + width + " " + height) +
                      " role=\"img\">\n<title>" + picture::escaped(document.name) + "</title>\n<style>\n" +
                      std::string(picture::kPictureStyle) + "</style>\n" + picture::glyphSheet() +
                      "<rect class=\"paper\"" + attribute("width", width) + attribute("height", height) + "/>\n";
    svg += picture::pictureBody({.document = document,
                                 .notes = notes,
                                 .frame = frame,
                                 .ghost = nullptr,
                                 .overscan = 0.0,
                                 .marks = options.marks,
                                 .dimensionLines = options.dimensionLines,
                                 .memory = nullptr});
    return svg + "</svg>\n";
}

namespace {

std::string trueSizePath(const Entity& entity, const picture::Frame& frame, double lineWidth) {
    const picture::Outline outline = picture::outlineOf(entity.shape, frame.window, frame.window.diagonal() / 1e5);
    if (outline.strokes.empty())
        return {};
    std::string path = "<path" + attribute("id", entity.id) + attribute("d", picture::pathData(outline, frame, 6));
    if (entity.construction || entity.fixed)
        path += attribute("stroke", "#888888") +
                attribute("stroke-dasharray", decimal(lineWidth * 6, 6) + " " + decimal(lineWidth * 4, 6));
    return path + "/>\n";
}

/// SVG's own names for the units in which drawings are measured; empty for one that it does not have.
std::string_view svgUnit(std::string_view unit) {
    for (const std::string_view known : {"mm", "cm", "in"})
        if (unit == known)
            return known;
    return {};
}

}  // namespace

std::string writeTrueSizeSvg(const Document& document) {
    picture::Box window = picture::windowOf(document);
    if (window.empty())
        window = {{0.0, 0.0}, {1.0, 1.0}};
    const double lineWidth = std::max(window.diagonal() / 1000.0, 1e-6);
    window = window.grown(lineWidth * 2);
    const picture::Frame frame{window, 1.0, window.width(), window.height()};
    const std::string width = decimal(frame.width, 6), height = decimal(frame.height, 6);
    const std::string unit(svgUnit(document.lengthUnit));
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width + unit) +
                      attribute("height", height + unit) + attribute("viewBox", "0 0 " + width + " " + height) +
                      ">\n<title>" + picture::escaped(document.name) + "</title>\n<g fill=\"none\" stroke=\"#000000\"" +
                      attribute("stroke-width", decimal(lineWidth, 6)) + ">\n";
    for (const Entity& entity : document.entities)
        svg += trueSizePath(entity, frame, lineWidth);
    return svg + "</g>\n</svg>\n";
}

}  // namespace holdfast
