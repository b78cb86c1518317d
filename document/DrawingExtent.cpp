#include "document/DrawingExtent.h"

#include "geometry/Conics.h"

namespace holdfast::document {

namespace {

/// Adds the points that span a shape.
struct Spanning {
    Box& box;

    void around(Vec2 centre, double reach) const { box.add(boxAround(centre, 2.0 * reach, 2.0 * reach)); }
    void addAll(const std::vector<Vec2>& points) const {
        for (const Vec2 point : points)
            box.add(point);
    }

    void operator()(const LineShape& s) const {
        box.add(s.start);
        box.add(s.end);
    }
    void operator()(const ArcShape& s) const {
        for (const double angle : {s.startAngle, s.endAngle})
            box.add(circlePoint(s.centre, s.radius, angle));
    }
    void operator()(const CircleShape& s) const { around(s.centre, std::abs(s.radius)); }
    void operator()(const EllipseShape& s) const { around(s.centre, norm(s.majorAxis)); }
    void operator()(const EllipticalArcShape& s) const {
        for (const double param : {s.startParam, s.endParam})
            box.add(ellipsePoint(s.centre, s.majorAxis, s.ratio, param));
    }
    void operator()(const SplineShape& s) const { addAll(s.control); }
    void operator()(const PointShape& s) const { box.add(s.position); }
    void operator()(const XlineShape& s) const { box.add(s.point); }
    void operator()(const RayShape& s) const { box.add(s.point); }
    void operator()(const PolylineShape& s) const { addAll(s.vertices); }
    void operator()(const TextShape& s) const { box.add(s.position); }
};

/// What defines a shape and need not lie in the box that it spans.
struct Outlying {
    Box& box;

    void operator()(const EllipticalArcShape& s) const { box.add(s.centre); }
    void operator()(const XlineShape& s) const { addAround(s.point); }
    void operator()(const RayShape& s) const { addAround(s.point); }
    template <class Other>
    void operator()(const Other&) const {}

    /// A little more than the unit, for its rounding.
    void addAround(Vec2 base) const { box.add(boxAround(base, 2.5, 2.5)); }
};

}  // namespace

void DrawingExtent::touch(std::size_t number) {
    if (number / kBlock < m_blocks.size())
        m_blocks[number / kBlock].isStale = true;
}

void DrawingExtent::include(Box& box, const Shape& shape) {
    std::visit(Spanning{box}, shape);
}

Box DrawingExtent::pointsOf(const Shape& shape) {
    Box box;
    include(box, shape);
    std::visit(Outlying{box}, shape);
    return box;
}

}  // namespace holdfast::document
