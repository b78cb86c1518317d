#include "editing/commands/move/MirrorLine.h"

#include "geometry/Vec2.h"

namespace holdfast::editing {

std::optional<PlaneTransform> reflectionAt(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape))
        return reflection(line->start, line->end);
    if (const auto* ray = std::get_if<RayShape>(&shape))
        return reflection(ray->point, ray->point + ray->direction);
    if (const auto* xline = std::get_if<XlineShape>(&shape))
        return reflection(xline->point, xline->point + xline->direction);
    return {};
}

}  // namespace holdfast::editing
