#include <algorithm>
#include <array>
#include <charconv>

#include "document/Names.h"
#include "editing/text/Parse.h"

namespace holdfast::editing {

namespace {

/// Words that stand where a name could stand.
constexpr std::array<std::string_view, 9> kKeywords{"about",  "around",   "from",   "by", "rounded",
                                                    "corner", "segments", "anyway", "as"};

bool isNumber(std::string_view name) {
    double value = 0.0;
    if (name.starts_with('+'))
        name.remove_prefix(1);
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), value);
    return error == std::errc() && end == name.data() + name.size();
}

bool needsQuotes(std::string_view name) {
    // A dot parts an entity from its place.
    return name.empty() || name.starts_with('@') || isNumber(name) ||
           name.find_first_of(" \t\r\n\".=") != std::string_view::npos ||
           std::find(kKeywords.begin(), kKeywords.end(), name) != kKeywords.end();
}

std::string escaped(char c) {
    switch (c) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return {c};
    }
}

std::string quoted(const std::string& name) {
    std::string text = "\"";
    for (const char c : name)
        text += escaped(c);
    return text + "\"";
}

std::string textOf(const std::string& name) {
    return needsQuotes(name) ? quoted(name) : name;
}

std::string textOf(const Name& name) {
    return textOf(name.value);
}

/// The shortest decimal text that reads back as the very same number.
std::string textOf(double number) {
    std::array<char, 32> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), result.ptr};
}

std::string textOf(int number) {
    return std::to_string(number);
}

std::string textOf(Vec2 point) {
    return textOf(point.x) + "," + textOf(point.y);
}

std::string textOf(CurveEnd end) {
    return end == CurveEnd::start ? "start" : "end";
}

std::string textOf(const std::vector<Name>& names) {
    std::string text;
    for (const Name& name : names)
        text += (text.empty() ? "" : " ") + textOf(name);
    return text;
}

std::string textOf(const Sourced<Place>& place) {
    return textOf(place.value.entity) + "." + placeText(place.value);
}

std::string textOf(const Coordinate& coordinate) {
    return (coordinate.axis == Coordinate::Axis::x ? "x " : "y ") + textOf(coordinate.value);
}

struct FigureWriter {
    std::string operator()(const LineShape& f) const { return "line " + textOf(f.start) + " " + textOf(f.end); }
    std::string operator()(const CircleShape& f) const {
        return "circle " + textOf(f.centre) + " radius " + textOf(f.radius);
    }
    std::string operator()(const DrawnArc& f) const {
        return "arc centre " + textOf(f.centre) + " from " + textOf(f.from) + " to " + textOf(f.to);
    }
    std::string operator()(const DrawnPolyline& f) const {
        std::string text = "polyline";
        for (std::size_t i = 0; i < f.vertices.size(); ++i)
            text += " " + textOf(f.vertices[i]) + (f.bulges[i] == 0.0 ? "" : " bulge " + textOf(f.bulges[i]));
        return text + (f.closed ? " closed" : "");
    }
    std::string operator()(const PointShape& f) const { return "point " + textOf(f.position); }
    std::string operator()(const DrawnEllipse& f) const {
        return "ellipse " + textOf(f.centre) + " major " + textOf(f.majorAxis) + " ratio " + textOf(f.ratio) +
               (f.span ? " from " + textOf(f.span->from) + " to " + textOf(f.span->to) : "");
    }
    std::string operator()(const DrawnSpline& f) const {
        std::string text = "spline";
        for (const Vec2 point : f.control)
            text += " " + textOf(point);
        return text + (f.degree == 3 ? "" : " degree " + textOf(f.degree)) + (f.closed ? " closed" : "");
    }
    std::string operator()(const DrawnEndless& f) const {
        return (f.isRay ? "ray " : "xline ") + textOf(f.point) + " through " + textOf(f.through);
    }
    std::string operator()(const DrawnText& f) const {
        return "text " + quoted(f.text) + " at " + textOf(f.position) +
               (f.height == DrawnText().height ? "" : " height " + textOf(f.height)) +
               (f.degrees == 0.0 ? "" : " rotation " + textOf(f.degrees));
    }
};

std::string timesOf(const Sourced<int>& times) {
    return times.value == 1 ? "" : " times " + textOf(times.value);
}

struct ArrayWriter {
    std::string operator()(const CopyGrid& grid) const {
        return row(grid.row) + (grid.rows ? " and" + row(*grid.rows) : "");
    }
    std::string operator()(const CopyRing& ring) const {
        return " around " + textOf(ring.about) + " by " + textOf(ring.degrees) + timesOf(ring.times);
    }
    static std::string row(const CopyRow& each) { return " by " + textOf(each.by) + timesOf(each.times); }
};

struct Writer {
    std::string operator()(const Break& e) const {
        return "break " + textOf(e.entity) + " at " + textOf(e.from) + (e.to ? " to " + textOf(*e.to) : "");
    }
    std::string operator()(const Trim& e) const {
        return "trim " + textOf(e.entity) + " at " + textOf(e.at) + " by " + textOf(e.by);
    }
    std::string operator()(const Extend& e) const {
        return "extend " + textOf(e.entity) + " " + textOf(e.end) + " to " + textOf(e.to);
    }
    std::string operator()(const Fillet& e) const {
        return "fillet " + textOf(e.first) + " " + textOf(e.second) + radius(e.radius) +
               (e.picks ? " at " + textOf(e.picks->first) + " " + textOf(e.picks->second) : "") + corner(e.keepCorner);
    }
    std::string operator()(const FilletCorner& e) const {
        return "fillet " + textOf(e.polyline) + " corner " + textOf(e.corner) + radius(e.radius) + corner(e.keepCorner);
    }
    std::string operator()(const FilletSegments& e) const {
        return "fillet " + textOf(e.polyline) + " segments " + textOf(e.from) + " " + textOf(e.to) + radius(e.radius);
    }
    std::string operator()(const Join& e) const { return "join " + textOf(e.entities); }
    std::string operator()(const Lengthen& e) const {
        return "lengthen " + textOf(e.entity) + " " + textOf(e.end) + (e.way == Lengthen::Way::by ? " by " : " to ") +
               textOf(e.length);
    }
    std::string operator()(const Stretch& e) const {
        return "stretch window " + textOf(e.first) + " " + textOf(e.second) + " by " + textOf(e.by);
    }
    std::string operator()(const Mirror& e) const {
        const bool isAtPoints = e.about.value.empty();
        return "mirror " + textOf(e.entities) + " about " +
               (isAtPoints ? textOf(e.first) + " " + textOf(e.second) : line(e.about.value)) + (e.keep ? " keep" : "");
    }
    std::string operator()(const Align& e) const {
        const std::string start = "align " + textOf(e.entities) + " from " + textOf(e.from);
        if (!e.direction)
            return start + " to " + textOf(e.to);
        return start + " " + textOf(e.direction->from) + " to " + textOf(e.to) + " " + textOf(e.direction->to) +
               (e.direction->scale ? " scale" : "");
    }
    std::string operator()(const Rotate& e) const {
        return "rotate " + textOf(e.entities) + " about " + textOf(e.about) + " by " + textOf(e.degrees);
    }
    std::string operator()(const Drag& e) const {
        return "drag " + std::visit([](const auto& held) { return textOf(held); }, e.held) + " by " + textOf(e.by) +
               (e.steps == 1 ? "" : " steps " + textOf(e.steps.value));
    }
    std::string operator()(const Set& e) const {
        return "set " + textOf(e.entity) + " " + std::string(wordOf(e.property.value)) +
               (isListed(e.property.value) ? " " + textOf(e.index.value) : "") + " " +
               std::visit([](const auto& value) { return textOf(value); }, e.value);
    }
    std::string operator()(const SetDimension& e) const { return "set " + textOf(e.dimension) + " " + textOf(e.value); }
    std::string operator()(const SetDriving& e) const {
        return "set " + textOf(e.dimension) + (e.driving ? " driving" : " measured");
    }
    std::string operator()(const Constrain& e) const {
        std::string text = "constrain " + std::string(typeName(e.type.value));
        for (const Sourced<Place>& place : e.places)
            text += " " + (place.value.kind == PlaceKind::whole ? textOf(place.value.entity) : textOf(place));
        return text + (e.value ? " " + textOf(*e.value) : "") + (e.anyway ? " anyway" : "") + named(e.as) +
               (e.formula.value.empty() ? "" : calculated(e.formula));
    }
    std::string operator()(const SetActive& e) const {
        return (e.active ? "unsuppress " : "suppress ") + textOf(e.constraints);
    }
    std::string operator()(const Delete& e) const { return "delete " + textOf(e.constraints); }
    std::string operator()(const Erase& e) const { return "erase " + textOf(e.entities); }
    std::string operator()(const Draw& e) const {
        return "draw " + std::visit(FigureWriter(), e.figure) + (e.construction ? " construction" : "") + named(e.as);
    }
    std::string operator()(const Move& e) const { return "move " + textOf(e.entities) + " by " + textOf(e.by); }
    std::string operator()(const Copy& e) const {
        return "copy " + textOf(e.entities) + std::visit(ArrayWriter(), e.to) + (e.linked ? " linked" : "");
    }
    std::string operator()(const Scale& e) const {
        return "scale " + textOf(e.entities) + " about " + textOf(e.about) + " by " + textOf(e.factor.value);
    }
    std::string operator()(const Define& e) const {
        return "define" + (e.entities.empty() ? "" : " " + textOf(e.entities)) +
               (e.decimals ? " rounded " + textOf(e.decimals->value) : "");
    }
    std::string operator()(const SetFormula& e) const { return "set " + textOf(e.dimension) + calculated(e.formula); }
    std::string operator()(const SetParameter& e) const {
        return "parameter " + textOf(e.parameter) + calculated(e.formula);
    }
    std::string operator()(const Chamfer& e) const {
        return "chamfer " + textOf(e.first) + " " + textOf(e.second) + lengths(e.by) +
               (e.picks ? " at " + textOf(e.picks->first) + " " + textOf(e.picks->second) : "") + corner(e.keepCorner);
    }
    std::string operator()(const ChamferCorner& e) const {
        return "chamfer " + textOf(e.polyline) + " corner " + textOf(e.corner) + lengths(e.by) + corner(e.keepCorner);
    }
    std::string operator()(const Explode& e) const { return "explode " + textOf(e.entities); }
    std::string operator()(const Offset& e) const {
        return "offset " + textOf(e.entities) + " by " + textOf(e.by.value) + (e.rounded ? " rounded" : "");
    }
    std::string operator()(const Undo&) const { return "undo"; }
    std::string operator()(const Redo&) const { return "redo"; }

    static std::string named(const Name& name) { return name.value.empty() ? "" : " as " + textOf(name); }
    static std::string calculated(const Sourced<std::string>& formula) { return " = " + formula.value; }
    static std::string lengths(const ChamferLengths& by) {
        return " by " + textOf(by.first.value) + (by.second ? " " + textOf(by.second->value) : "");
    }
    /// A name where points could stand.
    static std::string line(const std::string& name) {
        return std::string_view("+-.,0123456789").find(name.front()) == std::string_view::npos ? textOf(name)
                                                                                               : quoted(name);
    }
    static std::string corner(bool isKept) { return isKept ? " keep corner" : ""; }
    static std::string radius(const Sourced<double>& value) { return " radius " + textOf(value.value); }
};

}  // namespace

std::string toText(const Edit& edit) {
    return std::visit(Writer(), edit);
}

}  // namespace holdfast::editing
