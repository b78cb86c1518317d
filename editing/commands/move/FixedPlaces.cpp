#include "editing/commands/move/FixedPlaces.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "document/Places.h"
#include "editing/Refusal.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

/// Tells of shapes whether a transform leaves them where a fixed constraint holds them, up to a tolerated distance.
class StaysInPlace {
public:
    StaysInPlace(const PlaneTransform& transform, double tolerance) : m_transform(transform), m_tolerance(tolerance) {}

    bool of(Vec2 point) const { return distance(m_transform.pointAfter(point), point) <= m_tolerance; }

    /// The ends of a fixed line may slide along it.
    bool operator()(const LineShape& line) const {
        const Vec2 along = line.end - line.start;
        return isOnLine(line.start, line.start, along) && isOnLine(line.end, line.start, along);
    }
    bool operator()(const RayShape& ray) const { return carrierStays(ray.point, ray.direction); }
    bool operator()(const XlineShape& xline) const { return carrierStays(xline.point, xline.direction); }
    bool operator()(const CircleShape& circle) const { return of(circle.centre) && keepsLength(circle.radius); }
    bool operator()(const ArcShape& arc) const { return of(arc.centre) && keepsLength(arc.radius); }
    bool operator()(const EllipseShape& ellipse) const { return of(ellipse.centre) && axisStays(ellipse.majorAxis); }
    bool operator()(const EllipticalArcShape& arc) const { return of(arc.centre) && axisStays(arc.majorAxis); }
    bool operator()(const SplineShape& spline) const { return allStay(spline.control); }
    bool operator()(const PolylineShape& polyline) const { return allStay(polyline.vertices); }
    bool operator()(const PointShape& point) const { return of(point.position); }
    bool operator()(const TextShape& text) const { return of(text.position); }

private:
    bool keepsLength(double length) const { return std::abs(m_transform.scale - 1.0) * length <= m_tolerance; }
    bool isOnLine(Vec2 point, Vec2 base, Vec2 along) const {
        const Vec2 away = m_transform.pointAfter(point) - base;
        const double length = norm(along);
        return std::abs(length > 0.0 ? cross(along, away) / length : norm(away)) <= m_tolerance;
    }
    bool carrierStays(Vec2 base, Vec2 direction) const {
        return isOnLine(base, base, direction) && isOnLine(base + direction, base, direction);
    }
    /// An ellipse has two major vertices: they may change places.
    bool axisStays(Vec2 major) const {
        const Vec2 after = m_transform.vectorAfter(major);
        return std::min(norm(after - major), norm(after + major)) <= m_tolerance;
    }
    bool allStay(const std::vector<Vec2>& points) const {
        return std::all_of(points.begin(), points.end(), [&](Vec2 point) { return of(point); });
    }

    const PlaneTransform& m_transform;
    double m_tolerance;
};

/// A segment of a polyline as the line or arc that it is; other shapes as they are.
Shape partAt(const Shape& shape, const Place& place) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline == nullptr || place.kind != PlaceKind::segment)
        return shape;
    const auto index = static_cast<std::size_t>(place.index);
    const Vec2 from = polyline->vertices[index], to = polyline->vertices[segmentEndVertex(*polyline, index)];
    const double bulge = polyline->bulges[index];
    return bulge == 0.0 ? Shape(LineShape{from, to}) : Shape(arcOfBulge(from, to, bulge));
}

bool staysInPlace(const Shape& shape, const Place& place, const StaysInPlace& stays) {
    if (const std::optional<Vec2> point = pointAt(shape, place))
        return stays.of(*point);
    return std::visit(stays, partAt(shape, place));
}

}  // namespace

void refuseMovingFixed(const EditContext& context, const std::vector<std::string>& names,
                       const PlaneTransform& transform) {
    const Document document = context.drawing.around(names);
    const StaysInPlace stays(transform, kHolds * context.drawing.extent());
    const std::unordered_set<std::string_view> moved(names.begin(), names.end());
    Evaluation refusal;
    for (const Constraint& constraint : document.constraints) {
        if (constraint.type != ConstraintType::fixed || !constraint.active || constraint.refs.empty())
            continue;
        const Place& place = constraint.refs.front();
        if (moved.contains(place.entity) && !staysInPlace(context.drawing.shape(place.entity), place, stays))
            refusal.conflicting.push_back(constraint.id);
    }
    if (!refusal.conflicting.empty())
        throw EditError(refusalOf(refusal, document, names));
}

}  // namespace holdfast::editing
