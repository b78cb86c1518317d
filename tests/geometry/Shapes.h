#pragma once

#include <gmock/gmock.h>

#include <numbers>
#include <ostream>
#include <vector>

#include "geometry/Angles.h"
#include "geometry/Shapes.h"
#include "geometry/Vec2.h"

namespace holdfast::geometry {

inline void PrintTo(Vec2 p, std::ostream* out) {
    *out << "(" << p.x << ", " << p.y << ")";
}

/// A point within 1e-9 (or the given distance) of another.
MATCHER_P2(IsNear, expected, tolerance, "") {
    return distance(arg, expected) <= tolerance;
}
MATCHER_P(IsAt, expected, "") {
    return distance(arg, expected) <= 1e-9;
}

inline LineShape line(double x1, double y1, double x2, double y2) {
    return {{x1, y1}, {x2, y2}};
}

/// A Bezier curve as a spline with the knots 0 and 1.
inline SplineShape bezier(std::vector<Vec2> control, std::vector<double> weights = {}) {
    SplineShape spline;
    spline.degree = static_cast<int>(control.size()) - 1;
    spline.knots.assign(control.size(), 0.0);
    spline.knots.insert(spline.knots.end(), control.size(), 1.0);
    spline.control = std::move(control);
    spline.weights = std::move(weights);
    return spline;
}

/// A polyline with vertex identifiers 11, 12, ...
inline PolylineShape polyline(std::vector<Vec2> vertices, std::vector<double> bulges = {}, bool closed = false) {
    PolylineShape shape;
    bulges.resize(vertices.size(), 0.0);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        shape.ids.push_back(static_cast<int>(i) + 11);
    }
    shape.vertices = std::move(vertices);
    shape.bulges = std::move(bulges);
    shape.closed = closed;
    return shape;
}

/// A unit square, counter-clockwise from the origin.
inline PolylineShape square(double side) {
    return polyline({{0, 0}, {side, 0}, {side, side}, {0, side}}, {}, true);
}

/// A full circle of radius 1 as a rational spline: four quarters with the knots 0, 1, 2, 3, 4.
inline SplineShape circleAsSpline() {
    const double w = std::numbers::sqrt2 / 2.0;
    SplineShape spline;
    spline.degree = 2;
    spline.control = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}};
    spline.weights = {1, w, 1, w, 1, w, 1, w, 1};
    spline.knots = {0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 4};
    return spline;
}

}  // namespace holdfast::geometry
