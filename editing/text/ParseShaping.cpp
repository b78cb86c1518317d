#include <array>

#include "editing/text/ParseCommands.h"

namespace holdfast::editing {

namespace {

/// "times N", or nothing for once.
Sourced<int> takeTimes(EditText& text) {
    if (!text.accept("times"))
        return 1;
    const int times = text.integer("the number of copies");
    return {times, text.column()};
}

CopyRow takeRow(EditText& text) {
    text.expect("by");
    const Vec2 by = text.vector("the displacement");
    return {by, takeTimes(text)};
}

CopyGrid takeGrid(EditText& text) {
    CopyGrid grid{.row = takeRow(text)};
    if (text.accept("and"))
        grid.rows = takeRow(text);
    return grid;
}

CopyRing takeRing(EditText& text) {
    CopyRing ring{.about = text.point("the point to turn about")};
    text.expect("by");
    ring.degrees = text.number("the angle in degrees, counter-clockwise");
    ring.times = takeTimes(text);
    return ring;
}

ChamferLengths takeLengths(EditText& text) {
    text.expect("by");
    const double first = text.number("the length that is cut off");
    ChamferLengths lengths{.first = {first, text.column()}};
    if (text.nextIsNumber()) {
        const double second = text.number("the length that is cut off the second curve");
        lengths.second = Sourced<double>(second, text.column());
    }
    return lengths;
}

}  // namespace

Edit parseMove(EditText& text) {
    static constexpr std::array<std::string_view, 1> ends{"by"};
    Move edit{.entities = text.names("an entity", ends), .by = {}};
    text.expect("by");
    edit.by = text.vector("the displacement");
    return edit;
}

Edit parseCopy(EditText& text) {
    static constexpr std::array<std::string_view, 2> ends{"by", "around"};
    Copy edit{.entities = text.names("an entity", ends), .to = {}};
    if (text.accept("around"))
        edit.to = takeRing(text);
    else
        edit.to = takeGrid(text);
    edit.linked = text.accept("linked");
    return edit;
}

Edit parseScale(EditText& text) {
    static constexpr std::array<std::string_view, 1> ends{"about"};
    Scale edit{.entities = text.names("an entity", ends), .about = {}};
    text.expect("about");
    edit.about = text.point("the point that stays");
    text.expect("by");
    const double factor = text.number("the factor");
    edit.factor = {factor, text.column()};
    return edit;
}

Edit parseChamfer(EditText& text) {
    text.partAtDot(kCorner);
    const Name first = text.name("an entity");
    if (acceptCorner(text)) {
        const int corner = text.integer("the number of a corner, counted from 0");
        ChamferCorner edit{first, corner, takeLengths(text)};
        edit.keepCorner = takeKeepCorner(text);
        return edit;
    }
    Chamfer edit{.first = first, .second = text.name("an entity"), .by = {}};
    edit.by = takeLengths(text);
    if (text.accept("at")) {
        const Vec2 pick = text.point("a point on the first curve");
        edit.picks = {pick, text.point("a point on the second curve")};
    }
    edit.keepCorner = takeKeepCorner(text);
    return edit;
}

Edit parseExplode(EditText& text) {
    return Explode{text.names("an entity", {})};
}

Edit parseOffset(EditText& text) {
    static constexpr std::array<std::string_view, 1> ends{"by"};
    Offset edit{.entities = text.names("an entity", ends)};
    text.expect("by");
    const double by = text.number("the distance");
    edit.by = {by, text.column()};
    edit.rounded = text.accept("rounded");
    return edit;
}

}  // namespace holdfast::editing
