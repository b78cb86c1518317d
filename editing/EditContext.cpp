#include "editing/EditContext.h"

#include <cmath>
#include <cstdio>

#include "document/Names.h"
#include "document/text/Suggest.h"
#include "editing/RefusedReferences.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::editing {

void requireEntity(const Drawing& drawing, const Name& name, std::span<const std::string_view> ends) {
    if (!drawing.id(name.value).isNull())
        return;
    refuseReference(drawing, name);
    const std::vector<std::string> names = drawing.names();
    std::vector<std::string_view> candidates(ends.begin(), ends.end());
    candidates.insert(candidates.end(), names.begin(), names.end());
    throw RefusedWord({"the drawing has no entity " + name.value, suggestion(name.value, candidates), name.column});
}

void requireEntities(const Drawing& drawing, const std::vector<Name>& names, std::span<const std::string_view> ends) {
    for (const Name& name : names)
        requireEntity(drawing, name, ends);
    if (names.empty())
        throw EditError("expected an entity; name one or more");
}

std::string impossible(std::string_view edit, const std::exception& refusal) {
    return "\"" + std::string(edit) + "\" is not possible: " + refusal.what();
}

std::vector<std::string> valuesOf(const std::vector<Name>& names) {
    std::vector<std::string> values;
    values.reserve(names.size());
    for (const Name& name : names)
        values.push_back(name.value);
    return values;
}

std::string spoken(Vec2 point) {
    // What is left of a difference of large numbers is no coordinate.
    const double least = kSamePoint * (std::abs(point.x) + std::abs(point.y));
    const auto shown = [least](double value) { return std::abs(value) < least ? 0.0 : value + 0.0; };
    char text[80];
    std::snprintf(text, sizeof text, "(%.6g, %.6g)", shown(point.x), shown(point.y));
    return text;
}

std::string spoken(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6g", number + 0.0);
    return text;
}

double spokenValue(ConstraintType type, double kept) {
    return traitsOf(type).value == ConstraintValue::angle ? inDegrees(kept) : kept;
}

double keptValue(ConstraintType type, double spoken) {
    return traitsOf(type).value == ConstraintValue::angle ? inRadians(spoken) : spoken;
}

namespace {

/// What a user reads off a picture is good to about this part of the curve.
constexpr double kReadOff = 1e-3;

/// Of the curve with the pick: farther away nobody can have meant it.
constexpr double kElsewhere = 0.5;

}  // namespace

double paramOnCurve(const Shape& shape, std::string_view name, Vec2 point, std::vector<std::string>* remarks) {
    const Nearest nearest = nearestOn(shape, point);
    Box box = boundsOf(shape);
    const bool isBounded = std::isfinite(box.diagonal());
    const double size = isBounded ? box.diagonal() : 1.0 + std::hypot(point.x, point.y);
    box.add(point);
    if (isBounded && nearest.distance > kElsewhere * box.diagonal())
        throw EditError("the point " + spoken(point) + " is not on " + std::string(name) + "; its nearest point is " +
                        spoken(nearest.point));
    if (nearest.distance > kReadOff * size && remarks != nullptr)
        remarks->push_back("took " + spoken(nearest.point) + " on " + std::string(name) + " for the point " +
                           spoken(point) + ", which is " + spoken(nearest.distance) + " away");
    return nearest.param;
}

void refuseNoCurve(const std::string& name, const Shape& shape, std::string_view done) {
    if (!isCurve(shape))
        throw EditError(name + " is no curve; only curves can be " + std::string(done));
}

void refuseFixed(const Drawing& drawing, const std::string& name) {
    if (drawing.isFixed(name))
        throw EditError(name + " is reference geometry that the drawing may not change; edit another entity");
}

}  // namespace holdfast::editing
