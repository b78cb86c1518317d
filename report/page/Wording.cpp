#include "report/page/Wording.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "document/Names.h"
#include "report/picture/Markup.h"
#include "report/picture/Plane2.h"

namespace holdfast::report {

namespace {

std::string shownNumber(double value) {
    return std::fabs(value) < 1.0 ? measure(value) : decimal(value, 3);
}

}  // namespace

std::string_view kindName(ConstraintType type) {
    return traitsOf(type).label;
}

std::string_view kindName(const Shape& shape) {
    static constexpr std::array<std::string_view, std::variant_size_v<Shape>> names{
        "line", "arc",      "circle", "ellipse", "elliptical arc", "spline", "point", "construction line",
        "ray",  "polyline", "text"};
    return names[shape.index()];
}

std::string placeNames(const Constraint& constraint) {
    std::string names;
    for (const Place& place : constraint.refs)
        names += (names.empty() ? "" : "  ") + spokenPlace(place);
    return names;
}

std::string valueText(const Constraint& constraint) {
    if (!isDimension(constraint.type) || !constraint.value)
        return {};
    const ConstraintTraits& traits = traitsOf(constraint.type);
    std::string text(traits.valuePrefix);
    if (traits.value == ConstraintValue::angle)
        text += decimal(inDegrees(*constraint.value), 2) + "\u00B0";
    else
        text += shownNumber(traits.value == ConstraintValue::signedLength ? *constraint.value
                                                                          : std::fabs(*constraint.value));
    return constraint.driving ? text : "(" + text + ")";
}

std::string labelText(Constraint constraint) {
    if (constraint.value && traitsOf(constraint.type).value == ConstraintValue::signedLength)
        constraint.value = std::fabs(*constraint.value);
    return valueText(constraint);
}

std::string residualText(double residual) {
    constexpr double nothing = 1e-8;
    return residual < nothing ? "below 1e-08" : measure(residual);
}

std::string shortNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value == 0.0 ? 0.0 : value);
    return text;
}

std::string sizeWords(SizeKind size) {
    std::string words(sizeName(size));
    std::replace(words.begin(), words.end(), '_', ' ');
    return words;
}

std::string counted(std::size_t count, std::string_view noun) {
    std::string text = std::to_string(count) + " " + std::string(noun);
    if (count == 1)
        return text;
    if (text.back() == 'y') {
        text.pop_back();
        return text + "ies";
    }
    return text + "s";
}

}  // namespace holdfast::report
