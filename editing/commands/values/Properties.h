#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// What can be set about an entity.
enum class Property {
    start,
    end,
    centre,
    position,
    through,    ///< a point on a ray or construction line that shows where it leads
    direction,  ///< the same as an angle
    radius,
    diameter,
    circumference,
    area,
    startAngle,
    endAngle,
    majorRadius,
    minorRadius,
    ratio,
    rotation,
    height,  ///< of a text's letters
    vertex,
    control
};

/// What a property's value is; angles are given in degrees and kept in radians.
enum class ValueKind { point, length, angle, ratio };

/// A property of one kind of entity.
struct PropertyRow {
    std::string_view entityType;  ///< as drawing files name it
    std::string_view word;        ///< as users call the property
    Property property;
    ValueKind valueKind;
    int hostNumber;  ///< the number that the host's properties palette gives it; 0 for what no constraint can hold
};

/// The properties of all kinds of entities. A word is the same property, with the same kind of value, wherever it
/// stands.
std::span<const PropertyRow> allProperties();

/// As users call it.
std::string_view wordOf(Property property);

/// True for vertices and control points: each entity has several, by number.
bool isListed(Property property);

/// The properties of a shape, in the order of their table.
std::span<const PropertyRow> propertiesOf(const Shape& shape);

/// A value for a property; only what belongs to its kind is read.
struct PropertyValue {
    Vec2 point{};
    double number = 0.0;
    int index = 0;  ///< of a vertex or control point
};

/// The shape with the property set and everything else that stands on its own kept: a radius keeps the centre and the
/// angles, a major radius the minor one. The result need not be sound (a radius below 0).
Shape withProperty(const Shape& shape, Property property, const PropertyValue& value);

/// What the property is now.
PropertyValue propertyOf(const Shape& shape, Property property, int index);

}  // namespace holdfast::editing
