#pragma once

#include <cmath>

namespace holdfast::geometry {

/// A point or a vector of the drawing plane, in the drawing's length unit.
struct Vec2 {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const Vec2&, const Vec2&) = default;
};

// Arithmetic on points and vectors of the drawing plane.

constexpr Vec2 operator+(Vec2 a, Vec2 b) {
    return {a.x + b.x, a.y + b.y};
}
constexpr Vec2 operator-(Vec2 a, Vec2 b) {
    return {a.x - b.x, a.y - b.y};
}
constexpr Vec2 operator-(Vec2 a) {
    return {-a.x, -a.y};
}
constexpr Vec2 operator*(double factor, Vec2 a) {
    return {factor * a.x, factor * a.y};
}

constexpr double dot(Vec2 a, Vec2 b) {
    return a.x * b.x + a.y * b.y;
}

/// Positive where b lies counter-clockwise of a.
constexpr double cross(Vec2 a, Vec2 b) {
    return a.x * b.y - a.y * b.x;
}

/// The vector turned a quarter counter-clockwise.
constexpr Vec2 leftOf(Vec2 a) {
    return {-a.y, a.x};
}

inline double norm(Vec2 a) {
    return std::hypot(a.x, a.y);
}
inline double distance(Vec2 a, Vec2 b) {
    return norm(b - a);
}
inline bool isFinite(Vec2 a) {
    return std::isfinite(a.x) && std::isfinite(a.y);
}

/// The same direction with length 1; a zero vector stays as it is.
inline Vec2 unit(Vec2 a) {
    const double size = norm(a);
    return size > 0.0 ? (1.0 / size) * a : a;
}

/// The unit vector at an angle from the x axis.
inline Vec2 polar(double angle) {
    return {std::cos(angle), std::sin(angle)};
}

}  // namespace holdfast::geometry
