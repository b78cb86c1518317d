#pragma once

#include <algorithm>
#include <limits>

#include "geometry/Vec2.h"

namespace holdfast::geometry {

/// An upright rectangle; its sides may lie at infinity. As made it is empty and contains nothing.
struct Box {
    Vec2 low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Vec2 high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

    bool isEmpty() const { return low.x > high.x || low.y > high.y; }
    bool isBounded() const { return isFinite(low) && isFinite(high); }
    double width() const { return isEmpty() ? 0.0 : high.x - low.x; }
    double height() const { return isEmpty() ? 0.0 : high.y - low.y; }
    double diagonal() const { return std::hypot(width(), height()); }
    Vec2 centre() const { return 0.5 * (low + high); }

    void add(Vec2 p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    void add(const Box& other) {
        low = {std::min(low.x, other.low.x), std::min(low.y, other.low.y)};
        high = {std::max(high.x, other.high.x), std::max(high.y, other.high.y)};
    }
    Box grownBy(double margin) const { return {{low.x - margin, low.y - margin}, {high.x + margin, high.y + margin}}; }
    /// What both boxes cover; empty where they lie apart.
    Box sharedWith(const Box& other) const {
        return {{std::max(low.x, other.low.x), std::max(low.y, other.low.y)},
                {std::min(high.x, other.high.x), std::min(high.y, other.high.y)}};
    }
    /// True when they share a point; `overlaps`: when they share more than their sides.
    bool meets(const Box& other) const { return !sharedWith(other).isEmpty(); }
    bool overlaps(const Box& other) const {
        return low.x < other.high.x && other.low.x < high.x && low.y < other.high.y && other.low.y < high.y;
    }
    bool contains(Vec2 p) const { return p.x >= low.x && p.x <= high.x && p.y >= low.y && p.y <= high.y; }
    /// The least distance from a point; 0 inside.
    double distanceTo(Vec2 p) const {
        return std::hypot(std::max({low.x - p.x, 0.0, p.x - high.x}), std::max({low.y - p.y, 0.0, p.y - high.y}));
    }
};

/// What contains every point.
inline constexpr Box kEverywhere{{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()},
                                 {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()}};

inline Box boxAround(Vec2 centre, double width, double height) {
    const Vec2 half{0.5 * width, 0.5 * height};
    return {centre - half, centre + half};
}

}  // namespace holdfast::geometry
