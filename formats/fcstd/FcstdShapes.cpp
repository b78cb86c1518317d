#include "formats/fcstd/FcstdShapes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "document/text/NumberText.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

constexpr std::string_view kTypePrefix = "Part::Geom";
constexpr int kHighestDegree = 25;  // of the program's splines

/// The numbers of a record's element, all of which it needs.
class Numbers {
public:
    explicit Numbers(const pugi::xml_node& node) : m_node(node) {}

    double operator()(const char* attribute) {
        const std::optional<double> value = numberIn(m_node, attribute);
        m_isWhole = m_isWhole && value.has_value();
        return value.value_or(0.0);
    }
    double orElse(const char* attribute, double missing) const { return numberIn(m_node, attribute).value_or(missing); }
    Vec2 centre() { return {(*this)("CenterX"), (*this)("CenterY")}; }
    /// Old documents do not say it: seen from above.
    bool looksDown() const { return orElse("NormalZ", 1.0) < 0.0; }

    template <class Kind>
    std::optional<Shape> whole(Kind shape) const {
        return m_isWhole ? std::optional<Shape>(std::move(shape)) : std::nullopt;
    }

private:
    pugi::xml_node m_node;
    bool m_isWhole = true;
};

/// Angles count from the record's own x axis, which has been turned by AngleXU; seen from below it is the other way
/// round, and begins on the negative x axis.
double xAxisAngle(const Numbers& numbers) {
    const double turned = numbers.orElse("AngleXU", 0.0);
    return numbers.looksDown() ? kPi - turned : turned;
}

double afterStart(double start, double end) {
    while (end <= start)
        end += kTurn;
    return end;
}

std::optional<Shape> lineIn(const pugi::xml_node& node) {
    Numbers of(node);
    const LineShape line{{of("StartX"), of("StartY")}, {of("EndX"), of("EndY")}};
    return of.whole(line);
}

std::optional<Shape> pointIn(const pugi::xml_node& node) {
    Numbers of(node);
    const PointShape point{{of("X"), of("Y")}};
    return of.whole(point);
}

std::optional<Shape> circleIn(const pugi::xml_node& node) {
    Numbers of(node);
    const CircleShape circle{of.centre(), of("Radius")};
    return of.whole(circle);
}

/// Angles that are no numbers, or beyond all turns, are none of an arc.
bool areAngles(double start, double end) {
    constexpr double mostTurns = 1000.0;
    return std::abs(start) < mostTurns && std::abs(end) < mostTurns;
}

std::optional<Shape> arcIn(const pugi::xml_node& node) {
    Numbers of(node);
    const double first = of("StartAngle"), last = of("EndAngle"), axis = xAxisAngle(of);
    if (!areAngles(first, last) || !areAngles(axis, axis))
        return std::nullopt;
    const double start = of.looksDown() ? axis - last : axis + first;
    const double end = of.looksDown() ? axis - first : axis + last;
    const ArcShape arc{of.centre(), of("Radius"), start, afterStart(start, end)};
    return of.whole(arc);
}

EllipseShape wholeEllipseIn(Numbers& of) {
    const double major = of("MajorRadius"), minor = of("MinorRadius");
    return {of.centre(), major * polar(xAxisAngle(of)), minor / major};
}

std::optional<Shape> ellipseIn(const pugi::xml_node& node) {
    Numbers of(node);
    const EllipseShape ellipse = wholeEllipseIn(of);
    return of.whole(ellipse);
}

std::optional<Shape> ellipticalArcIn(const pugi::xml_node& node) {
    Numbers of(node);
    const EllipseShape ellipse = wholeEllipseIn(of);
    const double first = of("StartAngle"), last = of("EndAngle");
    if (!areAngles(first, last))
        return std::nullopt;
    const double start = of.looksDown() ? -last : first, end = of.looksDown() ? -first : last;
    const EllipticalArcShape arc{ellipse.centre, ellipse.majorAxis, ellipse.ratio, start, afterStart(start, end)};
    return of.whole(arc);
}

std::optional<Shape> splineIn(const pugi::xml_node& node) {
    SplineShape spline;
    spline.degree = integerIn(node, "Degree");
    spline.periodic = integerIn(node, "IsPeriodic") != 0;
    if (spline.degree < 1 || spline.degree > kHighestDegree)
        return std::nullopt;
    bool isRational = false, isWhole = true;
    for (const pugi::xml_node& pole : node.children("Pole")) {
        Numbers of(pole);
        const PointShape point{{of("X"), of("Y")}};
        isWhole = isWhole && of.whole(point);
        spline.control.push_back(point.position);
        spline.weights.push_back(of.orElse("Weight", 1.0));
        isRational = isRational || spline.weights.back() != spline.weights.front();
    }
    for (const pugi::xml_node& knot : node.children("Knot")) {
        const std::optional<double> value = numberIn(knot, "Value");
        const int times = integerIn(knot, "Mult", 1);
        isWhole = isWhole && value && times > 0 && times <= spline.degree + 1;
        if (isWhole)
            spline.knots.insert(spline.knots.end(), static_cast<std::size_t>(times), *value);
    }
    if (!isRational)
        spline.weights.clear();
    return isWhole ? std::optional<Shape>(std::move(spline)) : std::nullopt;
}

void putPlane(pugi::xml_node node) {
    for (const char* flat : {"CenterZ", "NormalX", "NormalY"})
        putNumber(node, flat, 0.0);
    putNumber(node, "NormalZ", 1.0);
}

void putCentre(pugi::xml_node node, Vec2 centre) {
    putNumber(node, "CenterX", centre.x);
    putNumber(node, "CenterY", centre.y);
    putPlane(node);
}

void putEllipse(pugi::xml_node node, Vec2 centre, Vec2 majorAxis, double ratio) {
    putCentre(node, centre);
    putNumber(node, "MajorRadius", norm(majorAxis));
    putNumber(node, "MinorRadius", ratio * norm(majorAxis));
    putNumber(node, "AngleXU", std::atan2(majorAxis.y, majorAxis.x));
}

void putAngles(pugi::xml_node node, double start, double end) {
    putNumber(node, "StartAngle", start);
    putNumber(node, "EndAngle", end);
}

void putPoles(pugi::xml_node node, const SplineShape& spline) {
    for (std::size_t i = 0; i < spline.control.size(); ++i) {
        pugi::xml_node pole = node.append_child("Pole");
        putNumber(pole, "X", spline.control[i].x);
        putNumber(pole, "Y", spline.control[i].y);
        putNumber(pole, "Z", 0.0);
        putNumber(pole, "Weight", spline.weights.empty() ? 1.0 : spline.weights[i]);
    }
}

int putKnots(pugi::xml_node node, const std::vector<double>& knots) {
    int count = 0;
    for (std::size_t i = 0, next = 0; i < knots.size(); i = next, ++count) {
        while (next < knots.size() && knots[next] == knots[i])
            ++next;
        pugi::xml_node knot = node.append_child("Knot");
        putNumber(knot, "Value", knots[i]);
        knot.append_attribute("Mult").set_value(static_cast<unsigned>(next - i));
    }
    return count;
}

void putInteger(pugi::xml_node node, const char* name, int value) {
    pugi::xml_attribute attribute = node.attribute(name);
    if (attribute.empty())
        attribute = node.append_attribute(name);
    attribute.set_value(value);
}

/// Writes a shape into its element, which is empty or of the same kind.
struct PutShape {
    void operator()(const LineShape& line) {
        putNumber(node, "StartX", line.start.x);
        putNumber(node, "StartY", line.start.y);
        putNumber(node, "StartZ", 0.0);
        putNumber(node, "EndX", line.end.x);
        putNumber(node, "EndY", line.end.y);
        putNumber(node, "EndZ", 0.0);
    }
    void operator()(const CircleShape& circle) {
        putCentre(node, circle.centre);
        putNumber(node, "AngleXU", 0.0);
        putNumber(node, "Radius", circle.radius);
    }
    void operator()(const ArcShape& arc) {
        putCentre(node, arc.centre);
        putNumber(node, "AngleXU", 0.0);
        putNumber(node, "Radius", arc.radius);
        putAngles(node, arc.startAngle, arc.endAngle);
    }
    void operator()(const EllipseShape& ellipse) { putEllipse(node, ellipse.centre, ellipse.majorAxis, ellipse.ratio); }
    void operator()(const EllipticalArcShape& arc) {
        putEllipse(node, arc.centre, arc.majorAxis, arc.ratio);
        putAngles(node, arc.startParam, arc.endParam);
    }
    void operator()(const PointShape& point) {
        putNumber(node, "X", point.position.x);
        putNumber(node, "Y", point.position.y);
        putNumber(node, "Z", 0.0);
    }
    void operator()(const SplineShape& spline) {
        node.remove_children();
        for (const char* first : {"PolesCount", "KnotsCount"})
            putInteger(node, first, 0);
        putInteger(node, "Degree", spline.degree);
        putInteger(node, "IsPeriodic", spline.periodic ? 1 : 0);
        putPoles(node, spline);
        putInteger(node, "PolesCount", static_cast<int>(spline.control.size()));
        putInteger(node, "KnotsCount", putKnots(node, spline.knots));
    }
    template <class Other>
    void operator()(const Other&) {}

    pugi::xml_node node;
};

struct RecordKind {
    std::string_view kind, element;
    std::optional<Shape> (*read)(const pugi::xml_node& node);
};

constexpr RecordKind kKinds[] = {
    {"LineSegment", "LineSegment", &lineIn},
    {"Circle", "Circle", &circleIn},
    {"ArcOfCircle", "ArcOfCircle", &arcIn},
    {"Ellipse", "Ellipse", &ellipseIn},
    {"ArcOfEllipse", "ArcOfEllipse", &ellipticalArcIn},
    {"Point", "GeomPoint", &pointIn},
    {"BSplineCurve", "BSplineCurve", &splineIn},
};

const RecordKind* kindNamed(std::string_view name) {
    const auto* found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const RecordKind& each) { return each.kind == name; });
    return found == std::end(kKinds) ? nullptr : found;
}

struct KindOfShape {
    std::string_view operator()(const LineShape&) const { return "LineSegment"; }
    std::string_view operator()(const CircleShape&) const { return "Circle"; }
    std::string_view operator()(const ArcShape&) const { return "ArcOfCircle"; }
    std::string_view operator()(const EllipseShape&) const { return "Ellipse"; }
    std::string_view operator()(const EllipticalArcShape&) const { return "ArcOfEllipse"; }
    std::string_view operator()(const PointShape&) const { return "Point"; }
    std::string_view operator()(const SplineShape&) const { return "BSplineCurve"; }
    template <class Other>
    std::string_view operator()(const Other&) const {
        return {};
    }
};

pugi::xml_node elementOf(const pugi::xml_node& record) {
    const RecordKind* kind = kindNamed(kindOf(record));
    return kind == nullptr ? pugi::xml_node() : record.child(std::string(kind->element).c_str());
}

// The extension that tells a record's use.

constexpr const char* kUse = "Sketcher::SketchGeometryExtension";
constexpr std::size_t kBlockedBit = 0, kConstructionBit = 1;  // of its modes, from the right
constexpr std::size_t kModes = 32;

pugi::xml_node useOf(const pugi::xml_node& record) {
    return record.child("GeoExtensions").find_child_by_attribute("GeoExtension", "type", kUse);
}

bool modeIn(const pugi::xml_node& record, std::size_t bit) {
    const std::string_view modes = useOf(record).attribute("geometryModeFlags").value();
    return bit < modes.size() && modes[modes.size() - 1 - bit] == '1';
}

void putMode(pugi::xml_node record, std::size_t bit, bool isSet) {
    pugi::xml_attribute attribute = useOf(record).attribute("geometryModeFlags");
    std::string modes = attribute.value();
    if (bit >= modes.size() || modeIn(record, bit) == isSet)
        return;
    modes[modes.size() - 1 - bit] = isSet ? '1' : '0';
    attribute.set_value(modes.c_str());
}

void giveIdentifier(pugi::xml_node record, long identifier) {
    if (pugi::xml_attribute own = record.attribute("id"))
        own.set_value(identifier);
    if (pugi::xml_attribute own = useOf(record).attribute("id"))
        own.set_value(identifier);
}

/// As the program writes one, where the list shows none.
void makeRecord(pugi::xml_node record) {
    pugi::xml_node extensions = record.append_child("GeoExtensions");
    extensions.append_attribute("count").set_value(1);
    pugi::xml_node use = extensions.append_child("GeoExtension");
    use.append_attribute("type").set_value(kUse);
    use.append_attribute("internalGeometryType").set_value(0);
    use.append_attribute("geometryModeFlags").set_value(std::string(kModes, '0').c_str());
    use.append_attribute("geometryLayer").set_value(0);
}

}  // namespace

std::optional<double> numberIn(const pugi::xml_node& node, const char* attribute) {
    const std::string_view text = node.attribute(attribute).value();
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

void putNumber(pugi::xml_node node, const char* name, double value) {
    if (numberIn(node, name) == value)
        return;
    pugi::xml_attribute attribute = node.attribute(name);
    if (attribute.empty())
        attribute = node.append_attribute(name);
    attribute.set_value(numberText(value).c_str());
}

int integerIn(const pugi::xml_node& node, const char* attribute, int missing) {
    return node.attribute(attribute).as_int(missing);
}

std::string_view kindOf(const pugi::xml_node& record) {
    std::string_view type = record.attribute("type").value();
    if (type.starts_with(kTypePrefix))
        type.remove_prefix(kTypePrefix.size());
    return type;
}

std::optional<Shape> shapeIn(const pugi::xml_node& record) {
    const pugi::xml_node element = elementOf(record);
    return element.empty() ? std::nullopt : kindNamed(kindOf(record))->read(element);
}

bool canBeRecord(const Shape& shape) {
    return !std::visit(KindOfShape(), shape).empty();
}

void putShape(pugi::xml_node record, const Shape& shape) {
    const std::string_view kind = std::visit(KindOfShape(), shape);
    pugi::xml_node element = elementOf(record);
    if (element.empty() || kindOf(record) != kind) {
        const std::string name(kindNamed(kind)->element);
        const pugi::xml_node fresh =
            element.empty() ? record.append_child(name.c_str()) : record.insert_child_after(name.c_str(), element);
        record.remove_child(element);
        record.attribute("type").set_value((std::string(kTypePrefix) + std::string(kind)).c_str());
        element = fresh;
    }
    std::visit(PutShape{element}, shape);
}

long highestIdentifier(const pugi::xml_node& list) {
    long highest = 0;
    for (const pugi::xml_node& record : list.children("Geometry")) {
        highest = std::max<long>(highest, integerIn(record, "id"));
        for (const pugi::xml_node& extension : record.child("GeoExtensions").children())
            highest = std::max<long>(highest, integerIn(extension, "id"));
    }
    return highest;
}

pugi::xml_node addRecord(pugi::xml_node list, const pugi::xml_node& like, long identifier) {
    const pugi::xml_node pattern =
        like.empty() ? list.find_child([](const pugi::xml_node& each) { return !elementOf(each).empty(); }) : like;
    pugi::xml_node record;
    if (pattern.empty()) {
        record = list.append_child("Geometry");
        record.append_attribute("type");
        makeRecord(record);
    } else {
        record = list.append_copy(pattern);
    }
    if (like.empty()) {
        record.remove_child(elementOf(record));
        putConstruction(record, false);
    }
    putBlocked(record, false);
    putAlignment(record, 0);
    giveIdentifier(record, identifier);
    return record;
}

bool isConstruction(const pugi::xml_node& record) {
    if (const pugi::xml_node old = record.child("Construction"); old && !useOf(record).attribute("geometryModeFlags"))
        return integerIn(old, "value") != 0;
    return modeIn(record, kConstructionBit);
}

void putConstruction(pugi::xml_node record, bool isOne) {
    if (pugi::xml_node old = record.child("Construction"))
        old.attribute("value").set_value(isOne ? 1 : 0);
    putMode(record, kConstructionBit, isOne);
}

void putBlocked(pugi::xml_node record, bool isOne) {
    putMode(record, kBlockedBit, isOne);
}

void putAlignment(pugi::xml_node record, int alignment) {
    if (pugi::xml_attribute type = useOf(record).attribute("internalGeometryType"))
        type.set_value(alignment);
}

}  // namespace holdfast::formats
