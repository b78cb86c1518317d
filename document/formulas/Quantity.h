#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "document/Uses.h"

namespace holdfast::document {

/// A number and what it measures: powers of lengths and angles. A plain number has neither.
struct Quantity {
    double value = 0.0;  ///< lengths in the drawing's length unit, angles in radians
    int length = 0;      ///< 1: a length, 2: an area, -1: one by a length
    int angle = 0;

    bool isNumber() const { return length == 0 && angle == 0; }
    bool isLength() const { return length == 1 && angle == 0; }
    bool isAngle() const { return length == 0 && angle == 1; }
    bool measuresAs(const Quantity& other) const { return length == other.length && angle == other.angle; }

    friend bool operator==(const Quantity&, const Quantity&) = default;
};

/// "a number", "a length", "an angle", "an area", "a length to the power of -1".
std::string spokenKind(const Quantity& quantity);

/// "80", "43 mm", "30 deg", "1600 mm^2", with six digits.
std::string quantityText(const Quantity& quantity, std::string_view lengthUnit);

/// What a plain number means beside another quantity, or where one is expected: a length in the drawing's unit, or
/// degrees. Anything but a plain number stays what it is.
Quantity meantAs(const Quantity& plain, const Quantity& other);

/// The units of lengths and angles that can stand behind a number in a formula: um, mm, cm, m, in, inch, ft, deg, rad
/// and the degree sign.
std::span<const std::string_view> unitNames();

/// One of a unit, in a drawing with this length unit; nothing for a word that is no unit.
std::optional<Quantity> unitNamed(std::string_view name, std::string_view lengthUnit);

}  // namespace holdfast::document
