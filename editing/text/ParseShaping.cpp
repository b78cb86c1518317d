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
    const Vec2 by = text.point("the displacement");
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

}  // namespace

Edit parseMove(EditText& text) {
    static constexpr std::array<std::string_view, 1> ends{"by"};
    Move edit{.entities = text.names("an entity", ends), .by = {}};
    text.expect("by");
    edit.by = text.point("the displacement");
    return edit;
}

Edit parseCopy(EditText& text) {
    static constexpr std::array<std::string_view, 2> ends{"by", "around"};
    Copy edit{.entities = text.names("an entity", ends), .to = {}};
    if (text.accept("around"))
        edit.to = takeRing(text);
    else
        edit.to = takeGrid(text);
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

}  // namespace holdfast::editing
