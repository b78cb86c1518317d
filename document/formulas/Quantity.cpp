#include "document/formulas/Quantity.h"

#include <array>
#include <cassert>
#include <cstdio>

#include "geometry/Angles.h"

namespace holdfast::document {

namespace {

/// Lengths in micrometres, of which all units are whole numbers: 1 in is 25.4 mm to the last bit.
struct Unit {
    std::string_view name;
    double micrometres;  // 0 for an angle
    double radians;      // 0 for a length
};

constexpr double kDegree = inRadians(1.0);

constexpr Unit kUnits[] = {
    {"mm", 1e3, 0.0},       {"cm", 1e4, 0.0},     {"m", 1e6, 0.0},       {"um", 1.0, 0.0},  {"in", 25400.0, 0.0},
    {"inch", 25400.0, 0.0}, {"ft", 3.048e5, 0.0}, {"deg", 0.0, kDegree}, {"rad", 0.0, 1.0}, {"\u00B0", 0.0, kDegree},
};

const Unit* find(std::string_view name) {
    for (const Unit& unit : kUnits)
        if (unit.name == name)
            return &unit;
    return nullptr;
}

std::string power(std::string_view what, int exponent) {
    const std::string text(what);
    return exponent == 1 ? text : text + " to the power of " + std::to_string(exponent);
}

}  // namespace

std::string spokenKind(const Quantity& quantity) {
    if (quantity.isNumber())
        return "a number";
    if (quantity.angle == 0 && quantity.length == 2)
        return "an area";
    if (quantity.angle == 0)
        return power("a length", quantity.length);
    if (quantity.length == 0)
        return power("an angle", quantity.angle);
    return power("a length", quantity.length) + " times " + power("an angle", quantity.angle);
}

std::string quantityText(const Quantity& quantity, std::string_view lengthUnit) {
    const bool isAngle = quantity.isAngle();
    char number[40];
    std::snprintf(number, sizeof number, "%.6g", (isAngle ? inDegrees(quantity.value) : quantity.value) + 0.0);
    std::string text = number;
    const auto add = [&](std::string_view unit, int exponent) {
        if (exponent != 0)
            text += " " + std::string(unit) + (exponent == 1 ? "" : "^" + std::to_string(exponent));
    };
    add(lengthUnit, quantity.length);
    add(isAngle ? "deg" : "rad", quantity.angle);
    return text;
}

Quantity meantAs(const Quantity& plain, const Quantity& other) {
    if (!plain.isNumber() || (other.angle != 0 && !other.isAngle()))
        return plain;
    return {other.isAngle() ? inRadians(plain.value) : plain.value, other.length, other.angle};
}

std::span<const std::string_view> unitNames() {
    static constexpr auto names = [] {
        std::array<std::string_view, std::size(kUnits)> all;
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = kUnits[i].name;
        return all;
    }();
    return names;
}

std::optional<Quantity> unitNamed(std::string_view name, std::string_view lengthUnit) {
    const Unit* unit = find(name);
    if (unit == nullptr)
        return std::nullopt;
    if (unit->micrometres == 0.0)
        return Quantity{unit->radians, 0, 1};
    const Unit* own = find(lengthUnit);
    assert(own != nullptr && own->micrometres > 0.0);
    return Quantity{unit->micrometres / own->micrometres, 1, 0};
}

}  // namespace holdfast::document
