#include "formats/svg/SvgViewport.h"

#include <algorithm>
#include <cmath>

#include "document/text/Suggest.h"
#include "formats/svg/SvgFault.h"
#include "formats/svg/SvgNumbers.h"
#include "formats/svg/SvgTransform.h"

namespace holdfast::formats {
namespace {

/// A size of the page, as its attribute says it.
struct SvgMeasure {
    double value = 0.0;
    std::string_view unit;  // empty: pixels, without saying so

    double millimetres() const { return value * *svgUnit(unit.empty() ? "px" : unit); }
};

/// Shares of the window that it is looked at in, and sizes of letters, are no measure.
std::optional<SvgMeasure> measureOf(std::string_view text) {
    SvgNumbers numbers(text);
    if (numbers.atEnd() || text == "auto")
        return std::nullopt;
    SvgMeasure measure{numbers.number(), {}};
    measure.unit = numbers.word();
    if (measure.unit == "%" || measure.unit == "em" || measure.unit == "ex")
        return std::nullopt;
    if (!numbers.atEnd() || (!measure.unit.empty() && !svgUnit(measure.unit)))
        throw SvgFault{"the size " + inQuotes(text), "a length, such as 100mm"};
    if (!(measure.value > 0.0))
        throw SvgFault{"the size " + inQuotes(text), "a length above 0"};
    return measure;
}

/// Where the smaller of two lengths lies in the larger: at its begin, in its middle or at its end.
double aligned(std::string_view aspect, std::string_view least, std::string_view most, double space) {
    if (aspect.find(least) != std::string_view::npos)
        return 0.0;
    return aspect.find(most) != std::string_view::npos ? space : 0.5 * space;
}

/// What lengths of the drawing are in, and how many millimetres that is.
struct DrawingUnit {
    std::string name = "mm";
    double millimetres = 1.0;
};

DrawingUnit drawingUnitOf(const std::optional<SvgMeasure>& width, const std::optional<SvgMeasure>& height) {
    const std::string_view unit = width ? width->unit : height ? height->unit : std::string_view();
    if (unit == "in" || unit == "cm")
        return {std::string(unit), *svgUnit(unit)};
    return {};
}

}  // namespace

std::optional<SvgBox> svgViewBox(pugi::xml_node node) {
    const std::string_view text = node.attribute("viewBox").value();
    SvgNumbers numbers(text);
    if (numbers.atEnd() || text == "none")
        return std::nullopt;
    SvgBox box;
    for (double* value : {&box.corner.x, &box.corner.y, &box.size.x, &box.size.y})
        *value = numbers.number();
    if (!numbers.atEnd() || !(box.size.x > 0.0) || !(box.size.y > 0.0))
        throw SvgFault{"the viewBox " + inQuotes(text), "four numbers, the last two of them above 0"};
    return box;
}

Affine svgFit(const SvgBox& shown, const SvgBox& into, std::string_view aspect) {
    Vec2 scale{into.size.x / shown.size.x, into.size.y / shown.size.y};
    if (aspect.find("none") == std::string_view::npos) {
        const bool isFilled = aspect.find("slice") != std::string_view::npos;
        scale.x = scale.y = isFilled ? std::max(scale.x, scale.y) : std::min(scale.x, scale.y);
    }
    const Vec2 space = into.size - Vec2{scale.x * shown.size.x, scale.y * shown.size.y};
    const Vec2 corner =
        into.corner + Vec2{aligned(aspect, "xMin", "xMax", space.x), aligned(aspect, "YMin", "YMax", space.y)};
    return svgChained({{scale.x, 0.0}, {0.0, scale.y}, corner}, {{1.0, 0.0}, {0.0, 1.0}, -shown.corner});
}

SvgPage svgPage(pugi::xml_node root) {
    const std::optional<SvgMeasure> width = measureOf(root.attribute("width").value()),
                                    height = measureOf(root.attribute("height").value());
    const std::optional<SvgBox> box = svgViewBox(root);
    const DrawingUnit unit = drawingUnitOf(width, height);
    const auto inUnit = [&](const SvgMeasure& measure) { return measure.millimetres() / unit.millimetres; };
    const double pixel = *svgUnit("px") / unit.millimetres;
    SvgPage page;
    page.unit = unit.name;
    page.isMeasured = (width && !width->unit.empty()) || (height && !height->unit.empty());
    // What is not said of the size is as the window that is shown has it.
    Vec2 size;
    if (box) {
        const double scale = width ? inUnit(*width) / box->size.x : height ? inUnit(*height) / box->size.y : pixel;
        size = {width ? inUnit(*width) : scale * box->size.x, height ? inUnit(*height) : scale * box->size.y};
    } else {
        size = {width ? inUnit(*width) : 0.0, height ? inUnit(*height) : 0.0};
    }
    page.size = box ? box->size : (1.0 / pixel) * size;
    const Affine shown = box ? svgFit(*box, {{}, size}, root.attribute("preserveAspectRatio").value())
                             : Affine{{pixel, 0.0}, {0.0, pixel}, {}};
    page.toDrawing = svgChained({{1.0, 0.0}, {0.0, -1.0}, {0.0, size.y}}, shown);
    return page;
}

}  // namespace holdfast::formats
