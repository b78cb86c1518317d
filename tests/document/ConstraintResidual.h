#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "document/Places.h"

namespace holdfast::document {

/// How far, in lengths of the drawing, a constraint of the kinds that are inferred is from being fulfilled; computed
/// from the shapes alone.
class ConstraintResidual {
public:
    ConstraintResidual(const Constraint& constraint, const EntityIndex& entities)
        : m_constraint(constraint), m_entities(entities) {}

    double value() const {
        switch (m_constraint.type) {
            case ConstraintType::coincident:
            case ConstraintType::concentric:
                return distance(point(0), point(1));
            case ConstraintType::horizontal:
                return m_constraint.refs.size() == 2 ? std::abs(point(0).y - point(1).y) : std::abs(direction(0).y);
            case ConstraintType::vertical:
                return m_constraint.refs.size() == 2 ? std::abs(point(0).x - point(1).x) : std::abs(direction(0).x);
            case ConstraintType::parallel:
                return std::abs(cross(direction(0), direction(1))) / longer();
            case ConstraintType::perpendicular:
                return std::abs(dot(direction(0), direction(1))) / longer();
            case ConstraintType::collinear:
                return std::max(offLine(line(1).start), offLine(line(1).end));
            case ConstraintType::equal:
                return std::abs(size(0) - size(1));
            case ConstraintType::tangent:
                return distance(point(0), point(1)) + std::abs(cross(tangent(0), tangent(1)));
            default:
                std::abort();
        }
    }

private:
    static double distance(Vec2 a, Vec2 b) { return std::hypot(b.x - a.x, b.y - a.y); }
    static double cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }
    static double dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
    static double norm(Vec2 a) { return std::hypot(a.x, a.y); }
    static Vec2 unit(Vec2 a) { return {a.x / norm(a), a.y / norm(a)}; }

    const Place& place(std::size_t i) const { return m_constraint.refs[i]; }
    const Shape& shape(std::size_t i) const { return m_entities.find(place(i).entity)->shape; }
    Vec2 point(std::size_t i) const { return pointAt(shape(i), place(i)).value(); }

    /// The line, or the straight segment, that a place is or lies on.
    LineShape line(std::size_t i) const {
        if (const auto* polyline = std::get_if<PolylineShape>(&shape(i))) {
            const auto index = static_cast<std::size_t>(place(i).index);
            return {polyline->vertices[index], polyline->vertices[segmentEndVertex(*polyline, index)]};
        }
        return std::get<LineShape>(shape(i));
    }
    Vec2 direction(std::size_t i) const {
        const LineShape l = line(i);
        return {l.end.x - l.start.x, l.end.y - l.start.y};
    }
    double longer() const { return std::max(norm(direction(0)), norm(direction(1))); }
    double offLine(Vec2 p) const {
        const LineShape first = line(0);
        return std::abs(cross(unit(direction(0)), {p.x - first.start.x, p.y - first.start.y}));
    }
    double size(std::size_t i) const {
        if (const auto* arc = std::get_if<ArcShape>(&shape(i)))
            return arc->radius;
        if (const auto* circle = std::get_if<CircleShape>(&shape(i)))
            return circle->radius;
        if (bulge(i) != 0.0)
            return arcOfBulge(line(i).start, line(i).end, bulge(i)).radius;
        return norm(direction(i));
    }
    double bulge(std::size_t i) const {
        const auto* polyline = std::get_if<PolylineShape>(&shape(i));
        return polyline == nullptr ? 0.0 : polyline->bulges[static_cast<std::size_t>(place(i).index)];
    }

    /// The unit tangent at an end: of round curves across the radius, of others by a small step along the curve.
    Vec2 tangent(std::size_t i) const {
        if (std::holds_alternative<LineShape>(shape(i)))
            return unit(direction(i));
        std::optional<Vec2> centre;
        if (const auto* arc = std::get_if<ArcShape>(&shape(i)))
            centre = arc->centre;
        if (bulge(i) != 0.0)
            centre = arcOfBulge(line(i).start, line(i).end, bulge(i)).centre;
        if (centre)
            return unit({point(i).y - centre->y, centre->x - point(i).x});
        if (const auto* arc = std::get_if<EllipticalArcShape>(&shape(i)))
            return tangentOf(*arc, place(i).kind == PlaceKind::start ? arc->startParam : arc->endParam);
        if (const auto* spline = std::get_if<SplineShape>(&shape(i)))
            return tangentOf(*spline, place(i).kind == PlaceKind::start);
        return unit(direction(i));
    }
    static Vec2 tangentOf(const EllipticalArcShape& arc, double param) {
        const double s = std::sin(param), c = arc.ratio * std::cos(param);
        return unit({-s * arc.majorAxis.x - c * arc.majorAxis.y, -s * arc.majorAxis.y + c * arc.majorAxis.x});
    }
    /// Clamped splines leave their ends towards the neighbouring control point.
    static Vec2 tangentOf(const SplineShape& spline, bool atStart) {
        const Vec2 a = atStart ? spline.control[0] : spline.control[spline.control.size() - 2];
        const Vec2 b = atStart ? spline.control[1] : spline.control.back();
        return unit({b.x - a.x, b.y - a.y});
    }

    const Constraint& m_constraint;
    const EntityIndex& m_entities;
};

inline double residualOf(const Constraint& constraint, const EntityIndex& entities) {
    return ConstraintResidual(constraint, entities).value();
}

}  // namespace holdfast::document
