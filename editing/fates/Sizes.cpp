#include "editing/fates/Sizes.h"

#include <algorithm>
#include <cmath>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Lengths.h"

namespace holdfast::editing {

namespace {

using Measure = EntitySize;

/// Nothing for a curve that geometry does not measure.
std::vector<Measure> withLength(const Shape& shape, std::vector<Measure> others = {}) {
    try {
        others.insert(others.begin(), {SizeKind::length, lengthOf(shape)});
    } catch (const GeometryError&) {
    }
    return others;
}

template <class Ellipse>
std::vector<Measure> axesOf(const Ellipse& ellipse) {
    const double major = norm(ellipse.majorAxis);
    return {{SizeKind::majorRadius, major}, {SizeKind::minorRadius, ellipse.ratio * major}};
}

struct Sizer {
    std::vector<Measure> operator()(const LineShape& s) const { return {{SizeKind::length, distance(s.start, s.end)}}; }
    std::vector<Measure> operator()(const ArcShape& s) const {
        const double sweep = s.endAngle - s.startAngle;
        return {
            {SizeKind::length, s.radius * sweep}, {SizeKind::radius, s.radius}, {SizeKind::sweep, inDegrees(sweep)}};
    }
    std::vector<Measure> operator()(const CircleShape& s) const { return {{SizeKind::radius, s.radius}}; }
    std::vector<Measure> operator()(const EllipseShape& s) const { return axesOf(s); }
    std::vector<Measure> operator()(const EllipticalArcShape& s) const { return withLength(s, axesOf(s)); }
    std::vector<Measure> operator()(const SplineShape& s) const { return withLength(s); }
    std::vector<Measure> operator()(const PolylineShape& s) const { return withLength(s); }
    std::vector<Measure> operator()(const PointShape&) const { return {}; }
    std::vector<Measure> operator()(const XlineShape&) const { return {}; }
    std::vector<Measure> operator()(const RayShape&) const { return {}; }
    std::vector<Measure> operator()(const TextShape& s) const { return {{SizeKind::height, s.height}}; }
};

bool isSame(double a, double b) {
    return std::abs(a - b) <= kSamePoint * std::max(std::abs(a), std::abs(b));
}

}  // namespace

std::vector<EntitySize> sizesOf(const Shape& shape) {
    return std::visit(Sizer(), shape);
}

std::vector<SizeChange> sizeChanges(const Shape& before, const Shape& after) {
    std::vector<SizeChange> changes;
    const std::vector<Measure> now = sizesOf(after);
    for (const Measure& was : sizesOf(before))
        for (const Measure& is : now)
            if (is.size == was.size && !isSame(was.value, is.value))
                changes.push_back({was.size, was.value, is.value});
    return changes;
}

}  // namespace holdfast::editing
