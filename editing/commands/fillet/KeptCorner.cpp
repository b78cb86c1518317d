#include "editing/commands/fillet/KeptCorner.h"

#include <cmath>

#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

std::optional<Vec2> commonEnd(const Shape& a, const Shape& b) {
    for (const std::optional<Vec2>& p : {startPoint(a), endPoint(a)})
        for (const std::optional<Vec2>& q : {startPoint(b), endPoint(b)})
            if (p && q && distance(*p, *q) <= kHolds * (1.0 + norm(*p)))
                return p;
    return {};
}

std::optional<Vec2> crossingOf(const LineShape& a, const LineShape& b) {
    const Vec2 u = unit(a.end - a.start), v = unit(b.end - b.start);
    const double sine = cross(u, v);
    if (std::abs(sine) <= kSameDirection)
        return {};
    return a.start + (cross(b.start - a.start, v) / sine) * u;
}

}  // namespace

Vec2 cornerOf(const FilletSide& a, const FilletSide& b) {
    if (const std::optional<Vec2> corner = commonEnd(a.shape, b.shape))
        return *corner;
    const auto *first = std::get_if<LineShape>(&a.shape), *second = std::get_if<LineShape>(&b.shape);
    if (first != nullptr && second != nullptr)
        if (const std::optional<Vec2> corner = crossingOf(*first, *second))
            return *corner;
    throw EditError(a.name + " and " + b.name + " have no corner to keep; leave \"keep corner\" out");
}

void keepCorner(EditContext& context, const std::optional<Vec2>& corner) {
    if (!corner)
        return;
    Entity point{.id = {}, .shape = PointShape{*corner}, .construction = true};
    point.id = context.drawing.freeNameFor(point.shape);
    context.drawing.add(point);
    context.keptCorner = point.id;
}

}  // namespace holdfast::editing
