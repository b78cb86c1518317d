#include "editing/ties/Contacts.h"

#include <cmath>

#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

struct Line {
    Vec2 point, direction;
};

std::optional<Line> lineOf(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape))
        return Line{line->start, unit(line->end - line->start)};
    if (const auto* ray = std::get_if<RayShape>(&shape))
        return Line{ray->point, unit(ray->direction)};
    if (const auto* xline = std::get_if<XlineShape>(&shape))
        return Line{xline->point, unit(xline->direction)};
    return {};
}

std::optional<CircleShape> circleOf(const Shape& shape) {
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        return *circle;
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        return CircleShape{arc->centre, arc->radius};
    return {};
}

std::optional<EllipseShape> ellipseOf(const Shape& shape) {
    if (const auto* ellipse = std::get_if<EllipseShape>(&shape))
        return *ellipse;
    if (const auto* arc = std::get_if<EllipticalArcShape>(&shape))
        return EllipseShape{arc->centre, arc->majorAxis, arc->ratio};
    return {};
}

Vec2 footOn(const Line& line, Vec2 point) {
    return line.point + dot(point - line.point, line.direction) * line.direction;
}

/// The point of the ellipse in which it runs along the line, on the line's side.
Vec2 contactOf(const Line& line, const EllipseShape& ellipse) {
    const Vec2 major = ellipse.majorAxis, minor = ellipse.ratio * leftOf(major);
    Vec2 normal = leftOf(line.direction);
    if (dot(line.point - ellipse.centre, normal) < 0.0)
        normal = -normal;
    const double along = dot(major, normal), across = dot(minor, normal);
    const double length = std::hypot(along, across);
    if (length == 0.0)
        return ellipse.centre;
    return ellipse.centre + (along / length) * major + (across / length) * minor;
}

std::optional<Vec2> contactOf(const CircleShape& a, const CircleShape& b) {
    const Vec2 way = b.centre - a.centre;
    if (norm(way) == 0.0)
        return {};
    // From inside they touch beyond the centre of the smaller one.
    const bool isInside = norm(way) < std::abs(a.radius - b.radius) + std::min(a.radius, b.radius);
    const double sense = isInside && a.radius < b.radius ? -1.0 : 1.0;
    return a.centre + (sense * a.radius) * unit(way);
}

}  // namespace

std::optional<Vec2> contactOf(const Shape& a, const Shape& b) {
    const std::optional<Line> line = lineOf(a);
    if (!line && lineOf(b))
        return contactOf(b, a);
    const std::optional<CircleShape> circleA = circleOf(a), circleB = circleOf(b);
    if (line && circleB)
        return footOn(*line, circleB->centre);
    if (line && ellipseOf(b))
        return contactOf(*line, *ellipseOf(b));
    if (circleA && circleB)
        return contactOf(*circleA, *circleB);
    return {};
}

}  // namespace holdfast::editing
