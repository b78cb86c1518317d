#include <array>

#include "editing/text/ParseCommands.h"

namespace holdfast::editing {

namespace {

Figure parseLine(EditText& text) {
    const Vec2 start = text.point("the start of the line");
    return LineShape{start, text.point("the end of the line")};
}

Figure parseCircle(EditText& text) {
    const Vec2 centre = text.point("the centre of the circle");
    text.expect("radius");
    return CircleShape{centre, text.number("the radius")};
}

Figure parseArc(EditText& text) {
    DrawnArc arc;
    if (!text.accept("center"))
        text.expect("centre");
    arc.centre = text.point("the centre of the arc");
    text.expect("from");
    arc.from = text.point("the start of the arc");
    text.expect("to");
    arc.to = text.point("a point in the direction of the end of the arc");
    return arc;
}

Figure parsePolyline(EditText& text) {
    DrawnPolyline polyline;
    do {
        polyline.vertices.push_back(text.point("a vertex"));
        polyline.bulges.push_back(text.accept("bulge") ? text.number("the bulge of the segment") : 0.0);
    } while (text.nextIsPoint());
    polyline.closed = text.accept("closed");
    return polyline;
}

Figure parseEllipse(EditText& text) {
    DrawnEllipse ellipse;
    ellipse.centre = text.point("the centre of the ellipse");
    text.expect("major");
    ellipse.majorAxis = text.vector("the vector from the centre to a major vertex");
    text.expect("ratio");
    ellipse.ratio = text.number("the minor radius divided by the major one");
    if (!text.accept("from"))
        return ellipse;
    const double from = text.number("the angle at which it begins, in degrees");
    text.expect("to");
    ellipse.span = EllipseSpan{from, text.number("the angle at which it ends, in degrees")};
    return ellipse;
}

Figure parseSpline(EditText& text) {
    DrawnSpline spline;
    do {
        spline.control.push_back(text.point("a control point"));
    } while (text.nextIsPoint());
    if (text.accept("degree"))
        spline.degree = text.integer("the degree");
    spline.closed = text.accept("closed");
    return spline;
}

Figure parseEndless(EditText& text, bool isRay) {
    const Vec2 point = text.point("a point of the line");
    text.expect("through");
    return DrawnEndless{point, text.point("another point of the line"), isRay};
}

Figure parseText(EditText& text) {
    DrawnText drawn{.text = text.otherName("the text, in quotes").value, .position = {}};
    text.expect("at");
    drawn.position = text.point("where the text stands");
    if (text.accept("height"))
        drawn.height = text.number("the height of the letters");
    if (text.accept("rotation"))
        drawn.degrees = text.number("the angle in degrees");
    return drawn;
}

struct FigureWord {
    std::string_view word;
    Figure (*parse)(EditText& text);
};

constexpr FigureWord kFigures[] = {
    {"line", &parseLine},
    {"circle", &parseCircle},
    {"arc", &parseArc},
    {"polyline", &parsePolyline},
    {"point", [](EditText& text) -> Figure { return PointShape{text.point("where the point lies")}; }},
    {"ellipse", &parseEllipse},
    {"spline", &parseSpline},
    {"ray", [](EditText& text) { return parseEndless(text, true); }},
    {"xline", [](EditText& text) { return parseEndless(text, false); }},
    {"text", &parseText},
};

}  // namespace

Edit parseDraw(EditText& text) {
    std::array<std::string_view, std::size(kFigures)> words;
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] = kFigures[i].word;
    const std::string word = text.oneOfWords(words, "what to draw");
    Draw edit;
    for (const FigureWord& figure : kFigures)
        if (figure.word == word)
            edit.figure = figure.parse(text);
    edit.construction = text.accept("construction");
    if (text.accept("as"))
        edit.as = text.otherName("a name for the entity");
    if (!edit.construction)
        edit.construction = text.accept("construction");
    return edit;
}

}  // namespace holdfast::editing
