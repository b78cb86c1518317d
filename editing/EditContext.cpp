#include "editing/EditContext.h"

#include <cmath>
#include <cstdio>

#include "document/Names.h"
#include "document/text/Suggest.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::editing {

void refuseUnknown(const EditText& text, const EditContext& context, const std::string& name, std::size_t back,
                   std::span<const std::string_view> ends) {
    const std::vector<std::string> names = context.drawing.names();
    std::vector<std::string_view> candidates(ends.begin(), ends.end());
    candidates.insert(candidates.end(), names.begin(), names.end());
    text.fail("the drawing has no entity " + name, suggestion(name, candidates), back);
}

std::string takeEntity(EditText& text, const EditContext& context, std::string_view what) {
    std::string name = text.word(what);
    if (context.drawing.id(name).isNull())
        refuseUnknown(text, context, name);
    return name;
}

std::vector<std::string> takeEntities(EditText& text, const EditContext& context, std::string_view what,
                                      std::span<const std::string_view> ends) {
    std::vector<std::string> names = text.names(what, ends);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (context.drawing.id(names[i]).isNull())
            refuseUnknown(text, context, names[i], names.size() - i, ends);
    return names;
}

std::string spoken(Vec2 point) {
    // What is left of a difference of large numbers is no coordinate.
    const double least = 1e-9 * (std::abs(point.x) + std::abs(point.y));
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

double paramOnCurve(const Shape& shape, std::string_view name, Vec2 point) {
    // What a user reads off a picture is good to about a thousandth of the curve.
    const Nearest nearest = nearestOn(shape, point);
    const double size = boundsOf(shape).diagonal();
    const double tolerance = std::isfinite(size) ? 1e-3 * size : 1e-3 * (1.0 + std::hypot(point.x, point.y));
    if (nearest.distance > tolerance)
        throw EditError("the point " + spoken(point) + " is not on " + std::string(name) + "; its nearest point is " +
                        spoken(nearest.point));
    return nearest.param;
}

void refuseNoCurve(const std::string& name, const Shape& shape, std::string_view done) {
    if (!isCurve(shape))
        throw EditError(name + " is no curve; only curves can be " + std::string(done));
}

void refuseFixed(const EditContext& context, const std::string& name) {
    if (context.drawing.isFixed(name))
        throw EditError(name + " is reference geometry that the drawing may not change; edit another entity");
}

}  // namespace holdfast::editing
