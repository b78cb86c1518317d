#include "document/DrawingExtent.h"

#include <cmath>

namespace holdfast::document {

namespace {

/// Hands the points that span a shape to somebody.
template <class Take>
struct Spans {
    Take take;

    void around(Vec2 centre, double reach) const {
        take(Vec2{centre.x - reach, centre.y - reach});
        take(Vec2{centre.x + reach, centre.y + reach});
    }
    void ellipsePoint(const EllipticalArcShape& s, double param) const {
        const Vec2 u = s.majorAxis, v{-u.y * s.ratio, u.x * s.ratio};
        take(Vec2{s.centre.x + u.x * std::cos(param) + v.x * std::sin(param),
                  s.centre.y + u.y * std::cos(param) + v.y * std::sin(param)});
    }
    void operator()(const LineShape& s) const {
        take(s.start);
        take(s.end);
    }
    void operator()(const ArcShape& s) const {
        for (const double angle : {s.startAngle, s.endAngle})
            take(Vec2{s.centre.x + s.radius * std::cos(angle), s.centre.y + s.radius * std::sin(angle)});
    }
    void operator()(const CircleShape& s) const { around(s.centre, std::abs(s.radius)); }
    void operator()(const EllipseShape& s) const { around(s.centre, std::hypot(s.majorAxis.x, s.majorAxis.y)); }
    void operator()(const EllipticalArcShape& s) const {
        ellipsePoint(s, s.startParam);
        ellipsePoint(s, s.endParam);
    }
    void operator()(const SplineShape& s) const {
        for (const Vec2 point : s.control)
            take(point);
    }
    void operator()(const PointShape& s) const { take(s.position); }
    void operator()(const XlineShape& s) const { take(s.point); }
    void operator()(const RayShape& s) const { take(s.point); }
    void operator()(const PolylineShape& s) const {
        for (const Vec2 point : s.vertices)
            take(point);
    }
    void operator()(const TextShape& s) const { take(s.position); }
};

}  // namespace

void DrawingExtent::touch(std::size_t number) {
    if (number / kBlock < m_blocks.size())
        m_blocks[number / kBlock].isStale = true;
}

void DrawingExtent::include(Block& block, const Shape& shape) {
    const auto take = [&block](Vec2 point) {
        block.lowX = std::min(block.lowX, point.x);
        block.lowY = std::min(block.lowY, point.y);
        block.highX = std::max(block.highX, point.x);
        block.highY = std::max(block.highY, point.y);
    };
    std::visit(Spans<decltype(take)>{take}, shape);
}

void DrawingExtent::join(Block& block, const Block& other) {
    block.lowX = std::min(block.lowX, other.lowX);
    block.lowY = std::min(block.lowY, other.lowY);
    block.highX = std::max(block.highX, other.highX);
    block.highY = std::max(block.highY, other.highY);
}

double DrawingExtent::diagonalOf(const Block& block) {
    if (block.highX < block.lowX)
        return 1.0;
    const double diagonal = std::hypot(block.highX - block.lowX, block.highY - block.lowY);
    return diagonal > 0.0 && std::isfinite(diagonal) ? diagonal : 1.0;
}

}  // namespace holdfast::document
