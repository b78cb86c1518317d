#include "editing/commands/values/Properties.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "document/Names.h"
#include "geometry/Angles.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

// clang-format off
// Rows of one type stand together.
constexpr PropertyRow kRows[] = {
    // entity type       word             property                 value              host's number
    {"line",             "start",         Property::start,         ValueKind::point,  1},
    {"line",             "end",           Property::end,           ValueKind::point,  2},
    {"ray",              "start",         Property::start,         ValueKind::point,  1},
    {"ray",              "through",       Property::through,       ValueKind::point,  2},
    {"ray",              "angle",         Property::direction,     ValueKind::angle,  2},
    {"xline",            "start",         Property::start,         ValueKind::point,  1},
    {"xline",            "through",       Property::through,       ValueKind::point,  2},
    {"xline",            "angle",         Property::direction,     ValueKind::angle,  2},
    {"circle",           "centre",        Property::centre,        ValueKind::point,  1},
    {"circle",           "radius",        Property::radius,        ValueKind::length, 2},
    {"circle",           "diameter",      Property::diameter,      ValueKind::length, 3},
    {"circle",           "circumference", Property::circumference, ValueKind::length, 4},
    {"circle",           "area",          Property::area,          ValueKind::length, 5},
    {"arc",              "centre",        Property::centre,        ValueKind::point,  2},
    {"arc",              "radius",        Property::radius,        ValueKind::length, 4},
    {"arc",              "start_angle",   Property::startAngle,    ValueKind::angle,  5},
    {"arc",              "end_angle",     Property::endAngle,      ValueKind::angle,  6},
    {"ellipse",          "centre",        Property::centre,        ValueKind::point,  2},
    {"ellipse",          "major_radius",  Property::majorRadius,   ValueKind::length, 4},
    {"ellipse",          "minor_radius",  Property::minorRadius,   ValueKind::length, 5},
    {"ellipse",          "ratio",         Property::ratio,         ValueKind::ratio,  6},
    {"elliptical_arc",   "centre",        Property::centre,        ValueKind::point,  2},
    {"elliptical_arc",   "major_radius",  Property::majorRadius,   ValueKind::length, 4},
    {"elliptical_arc",   "minor_radius",  Property::minorRadius,   ValueKind::length, 5},
    {"elliptical_arc",   "ratio",         Property::ratio,         ValueKind::ratio,  6},
    {"elliptical_arc",   "start_angle",   Property::startAngle,    ValueKind::angle,  7},
    {"elliptical_arc",   "end_angle",     Property::endAngle,      ValueKind::angle,  8},
    {"point",            "position",      Property::position,      ValueKind::point,  1},
    {"text",             "position",      Property::position,      ValueKind::point,  11},
    {"text",             "rotation",      Property::rotation,      ValueKind::angle,  7},
    {"text",             "height",        Property::height,        ValueKind::length, 0},
    {"mtext",            "position",      Property::position,      ValueKind::point,  8},
    {"mtext",            "rotation",      Property::rotation,      ValueKind::angle,  7},
    {"mtext",            "height",        Property::height,        ValueKind::length, 0},
    {"polyline",         "vertex",        Property::vertex,        ValueKind::point,  1},
    {"spline",           "control",       Property::control,       ValueKind::point,  2},
};
// clang-format on

/// The same direction as an angle above another one, by a turn at most.
double above(double angle, double other) {
    const double turns = std::ceil((angle - other) / kTurn) - 1.0;
    return angle - turns * kTurn;
}

double radiusFrom(Property property, double value) {
    switch (property) {
        case Property::diameter:
            return value / 2.0;
        case Property::circumference:
            return value / kTurn;
        case Property::area:
            return value > 0.0 ? std::sqrt(value / kPi) : value;
        default:
            return value;
    }
}

double fromRadius(Property property, double radius) {
    switch (property) {
        case Property::diameter:
            return 2.0 * radius;
        case Property::circumference:
            return kTurn * radius;
        case Property::area:
            return kPi * radius * radius;
        default:
            return radius;
    }
}

template <class Ellipse>
Ellipse withAxes(Ellipse ellipse, Property property, double value) {
    const double major = norm(ellipse.majorAxis);
    switch (property) {
        case Property::majorRadius:
            ellipse.ratio *= major / value;
            ellipse.majorAxis = (value / major) * ellipse.majorAxis;
            break;
        case Property::minorRadius:
            ellipse.ratio = value / major;
            break;
        default:
            ellipse.ratio = value;
    }
    return ellipse;
}

template <class Ellipse>
double axisOf(const Ellipse& ellipse, Property property) {
    const double major = norm(ellipse.majorAxis);
    if (property == Property::majorRadius)
        return major;
    return property == Property::minorRadius ? ellipse.ratio * major : ellipse.ratio;
}

struct Setter {
    Property property;
    const PropertyValue& value;

    Shape operator()(LineShape s) const {
        (property == Property::start ? s.start : s.end) = value.point;
        return s;
    }
    Shape operator()(const RayShape& s) const { return directed(s); }
    Shape operator()(const XlineShape& s) const { return directed(s); }
    Shape operator()(CircleShape s) const {
        if (property == Property::centre)
            s.centre = value.point;
        else
            s.radius = radiusFrom(property, value.number);
        return s;
    }
    Shape operator()(ArcShape s) const {
        if (property == Property::centre)
            s.centre = value.point;
        else if (property == Property::radius)
            s.radius = value.number;
        else
            setAngle(s.startAngle, s.endAngle);
        return s;
    }
    Shape operator()(EllipseShape s) const {
        if (property != Property::centre)
            return withAxes(s, property, value.number);
        s.centre = value.point;
        return s;
    }
    Shape operator()(EllipticalArcShape s) const {
        if (property == Property::centre)
            s.centre = value.point;
        else if (property == Property::startAngle || property == Property::endAngle)
            setAngle(s.startParam, s.endParam);
        else
            return withAxes(s, property, value.number);
        return s;
    }
    Shape operator()(SplineShape s) const {
        s.control[static_cast<std::size_t>(value.index)] = value.point;
        return s;
    }
    Shape operator()(PolylineShape s) const {
        s.vertices[static_cast<std::size_t>(value.index)] = value.point;
        return s;
    }
    Shape operator()(const PointShape&) const { return PointShape{value.point}; }
    Shape operator()(TextShape s) const {
        if (property == Property::position)
            s.position = value.point;
        else
            (property == Property::height ? s.height : s.rotation) = value.number;
        return s;
    }

    template <class Directed>
    Shape directed(Directed s) const {
        if (property == Property::start)
            s.point = value.point;
        else
            s.direction = property == Property::through ? unit(value.point - s.point) : polar(value.number);
        return s;
    }
    void setAngle(double& start, double& end) const {
        (property == Property::startAngle ? start : end) = value.number;
        end = above(end, start);
    }
};

struct Getter {
    Property property;
    int index;

    static PropertyValue at(Vec2 point) { return {.point = point}; }
    static PropertyValue of(double number) { return {.number = number}; }

    PropertyValue operator()(const LineShape& s) const { return at(property == Property::start ? s.start : s.end); }
    PropertyValue operator()(const RayShape& s) const { return directed(s); }
    PropertyValue operator()(const XlineShape& s) const { return directed(s); }
    PropertyValue operator()(const CircleShape& s) const {
        return {.point = s.centre, .number = fromRadius(property, s.radius)};
    }
    PropertyValue operator()(const ArcShape& s) const {
        if (property == Property::startAngle || property == Property::endAngle)
            return of(property == Property::startAngle ? s.startAngle : s.endAngle);
        return {.point = s.centre, .number = s.radius};
    }
    PropertyValue operator()(const EllipseShape& s) const { return {.point = s.centre, .number = axisOf(s, property)}; }
    PropertyValue operator()(const EllipticalArcShape& s) const {
        if (property == Property::startAngle || property == Property::endAngle)
            return of(property == Property::startAngle ? s.startParam : s.endParam);
        return {.point = s.centre, .number = axisOf(s, property)};
    }
    PropertyValue operator()(const SplineShape& s) const { return at(s.control[static_cast<std::size_t>(index)]); }
    PropertyValue operator()(const PolylineShape& s) const { return at(s.vertices[static_cast<std::size_t>(index)]); }
    PropertyValue operator()(const PointShape& s) const { return at(s.position); }
    PropertyValue operator()(const TextShape& s) const {
        return {.point = s.position, .number = property == Property::height ? s.height : s.rotation};
    }

    template <class Directed>
    PropertyValue directed(const Directed& s) const {
        if (property == Property::start)
            return at(s.point);
        return {.point = s.point + s.direction, .number = std::atan2(s.direction.y, s.direction.x)};
    }
};

}  // namespace

std::span<const PropertyRow> allProperties() {
    return kRows;
}

std::string_view wordOf(Property property) {
    const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                   [property](const PropertyRow& r) { return r.property == property; });
    return row->word;
}

bool isListed(Property property) {
    return property == Property::vertex || property == Property::control;
}

std::span<const PropertyRow> propertiesOf(const Shape& shape) {
    const auto isOfType = [type = typeName(shape)](const PropertyRow& row) { return row.entityType == type; };
    const auto* first = std::find_if(std::begin(kRows), std::end(kRows), isOfType);
    return {first, std::find_if_not(first, std::end(kRows), isOfType)};
}

Shape withProperty(const Shape& shape, Property property, const PropertyValue& value) {
    return std::visit(Setter{property, value}, shape);
}

PropertyValue propertyOf(const Shape& shape, Property property, int index) {
    return std::visit(Getter{property, index}, shape);
}

}  // namespace holdfast::editing
