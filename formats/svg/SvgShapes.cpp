#include "formats/svg/SvgShapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "formats/svg/SvgFault.h"
#include "formats/svg/SvgNumbers.h"
#include "formats/svg/SvgPath.h"

namespace holdfast::formats {
namespace {

/// The attributes of an element, whose lengths may be shares of the window's width, its height or its diagonal.
struct SvgLengths {
    pugi::xml_node node;
    Vec2 window;

    std::optional<double> along(const char* name) const { return said(name, window.x); }
    std::optional<double> up(const char* name) const { return said(name, window.y); }
    Vec2 point(const char* x, const char* y) const { return {along(x).value_or(0.0), up(y).value_or(0.0)}; }
    /// A size of 0 draws nothing, and so does none.
    double size(std::optional<double> value, const char* name) const {
        if (value && *value < 0.0)
            throw SvgFault{std::string("the attribute ") + name + " below 0", "a size of 0 or more"};
        return value.value_or(0.0);
    }
    double radius(const char* name) const { return size(said(name, norm(window) / std::numbers::sqrt2), name); }

private:
    std::optional<double> said(const char* name, double whole) const {
        return svgLength(node.attribute(name).value(), whole);
    }
};

void drawSvgLine(const SvgLengths& lengths, SvgPen& pen) {
    pen.moveTo(lengths.point("x1", "y1"));
    pen.lineTo(lengths.point("x2", "y2"));
}

void drawSvgPoints(pugi::xml_node node, bool isClosed, SvgPen& pen) {
    SvgNumbers numbers(node.attribute("points").value());
    for (bool isFirst = true; !numbers.atEnd(); isFirst = false) {
        const double x = numbers.number(), y = numbers.number();
        isFirst ? pen.moveTo({x, y}) : pen.lineTo({x, y});
    }
    if (isClosed)
        pen.close();
}

/// Of two radii of the corners the one that is not said is as the other; none is more than half of its side.
void drawSvgRectangle(const SvgLengths& lengths, SvgPen& pen) {
    const Vec2 a = lengths.point("x", "y");
    const Vec2 size{lengths.size(lengths.along("width"), "width"), lengths.size(lengths.up("height"), "height")};
    if (size.x == 0.0 || size.y == 0.0)
        return;
    const std::optional<double> xRadius = lengths.along("rx"), yRadius = lengths.up("ry");
    const SvgPen::Arc corner{std::min(lengths.size(xRadius ? xRadius : yRadius, "rx"), 0.5 * size.x),
                             std::min(lengths.size(yRadius ? yRadius : xRadius, "ry"), 0.5 * size.y), 0.0, false, true};
    const Vec2 b = a + size;
    const bool isRound = corner.xRadius > 0.0 && corner.yRadius > 0.0;
    const Vec2 x{isRound ? corner.xRadius : 0.0, 0.0}, y{0.0, isRound ? corner.yRadius : 0.0};
    // Each side from its begin to its end, then the corner behind it.
    const std::array<std::array<Vec2, 2>, 4> sides = {{{a + x, Vec2{b.x, a.y} - x},
                                                       {Vec2{b.x, a.y} + y, b - y},
                                                       {b - x, Vec2{a.x, b.y} + x},
                                                       {Vec2{a.x, b.y} - y, a + y}}};
    pen.moveTo(sides[0][0]);
    for (std::size_t i = 0; i < sides.size(); ++i) {
        pen.lineTo(sides[i][1]);
        if (isRound)
            pen.arcTo(corner, sides[(i + 1) % sides.size()][0]);
    }
}

std::optional<Shape> roundShape(Vec2 centre, double xRadius, double yRadius) {
    if (xRadius == 0.0 || yRadius == 0.0)
        return std::nullopt;
    if (xRadius == yRadius)
        return CircleShape{centre, xRadius};
    if (xRadius > yRadius)
        return EllipseShape{centre, {xRadius, 0.0}, yRadius / xRadius};
    return EllipseShape{centre, {0.0, yRadius}, xRadius / yRadius};
}

std::optional<Shape> ellipseOf(const SvgLengths& lengths) {
    const std::optional<double> x = lengths.along("rx"), y = lengths.up("ry");
    return roundShape(lengths.point("cx", "cy"), lengths.size(x ? x : y, "rx"), lengths.size(y ? y : x, "ry"));
}

}  // namespace

std::optional<SvgPen::Drawn> svgShapes(std::string_view name, pugi::xml_node node, Vec2 window) {
    const SvgLengths lengths{node, window};
    SvgPen pen;
    std::optional<Shape> round;
    if (name == "path")
        drawSvgPath(node.attribute("d").value(), pen);
    else if (name == "line")
        drawSvgLine(lengths, pen);
    else if (name == "polyline" || name == "polygon")
        drawSvgPoints(node, name == "polygon", pen);
    else if (name == "rect")
        drawSvgRectangle(lengths, pen);
    else if (name == "circle")
        round = roundShape(lengths.point("cx", "cy"), lengths.radius("r"), lengths.radius("r"));
    else if (name == "ellipse")
        round = ellipseOf(lengths);
    else
        return std::nullopt;
    SvgPen::Drawn drawn = pen.finish();
    if (round)
        drawn.shapes.push_back(*round);
    return drawn;
}

}  // namespace holdfast::formats
