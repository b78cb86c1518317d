#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "geometry/Vec2.h"
#include "report/Uses.h"

/// What pictures need of plane geometry.
namespace holdfast::report {

inline constexpr double kPi = 3.141592653589793238462643383279502884;

inline Vec2 operator*(Vec2 a, double factor) {
    return {a.x * factor, a.y * factor};
}
inline Vec2 midway(Vec2 a, Vec2 b) {
    return (a + b) * 0.5;
}
/// The vector of this length at an angle from the x axis.
inline Vec2 polar(double radius, double angle) {
    return geometry::polar(angle) * radius;
}

/// Of length 1; the fallback for a vector that is zero or not finite.
inline Vec2 unitOr(Vec2 a, Vec2 fallback) {
    const double size = norm(a);
    return size > 0.0 && std::isfinite(size) ? a * (1.0 / size) : fallback;
}

/// A box along the axes; empty until a point is added.
struct Box {
    Vec2 low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Vec2 high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

    bool empty() const { return !(low.x <= high.x && low.y <= high.y); }
    double width() const { return empty() ? 0.0 : high.x - low.x; }
    double height() const { return empty() ? 0.0 : high.y - low.y; }
    double diagonal() const { return std::hypot(width(), height()); }
    Vec2 centre() const { return midway(low, high); }

    void add(Vec2 point) {
        if (!isFinite(point))
            return;
        low = {std::min(low.x, point.x), std::min(low.y, point.y)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    }
    void add(const Box& other) {
        if (other.empty())
            return;
        add(other.low);
        add(other.high);
    }
    Box grown(double by) const { return {{low.x - by, low.y - by}, {high.x + by, high.y + by}}; }
    bool contains(Vec2 p) const { return p.x >= low.x && p.x <= high.x && p.y >= low.y && p.y <= high.y; }
    bool overlaps(const Box& other) const {
        return low.x < other.high.x && other.low.x < high.x && low.y < other.high.y && other.low.y < high.y;
    }
};

inline Box boxAround(Vec2 centre, double width, double height) {
    return {{centre.x - width / 2, centre.y - height / 2}, {centre.x + width / 2, centre.y + height / 2}};
}

}  // namespace holdfast::report
