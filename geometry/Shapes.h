#pragma once

#include <string>
#include <variant>
#include <vector>

#include "geometry/Vec2.h"

namespace holdfast::geometry {

// The shapes of a drawing, with the field names of the drawing files. Angles are radians.

struct LineShape {
    Vec2 start, end;
    friend bool operator==(const LineShape&, const LineShape&) = default;
};

/// Runs counter-clockwise from startAngle to endAngle; endAngle > startAngle and may exceed 2 pi.
struct ArcShape {
    Vec2 centre;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
    friend bool operator==(const ArcShape&, const ArcShape&) = default;
};

struct CircleShape {
    Vec2 centre;
    double radius = 0.0;
    friend bool operator==(const CircleShape&, const CircleShape&) = default;
};

/// A full ellipse: majorAxis is the vector from the centre to a major vertex, ratio is minor / major, in (0, 1].
struct EllipseShape {
    Vec2 centre, majorAxis;
    double ratio = 1.0;
    friend bool operator==(const EllipseShape&, const EllipseShape&) = default;
};

/// Part of an ellipse, counter-clockwise between two eccentric angles measured from the major axis.
struct EllipticalArcShape {
    Vec2 centre, majorAxis;
    double ratio = 1.0;
    double startParam = 0.0;
    double endParam = 0.0;
    friend bool operator==(const EllipticalArcShape&, const EllipticalArcShape&) = default;
};

/// A B-spline by control points. Not periodic: control.size() + degree + 1 flat knots. Periodic: the knots of one
/// period, first and last value with the same multiplicity. weights is empty for a polynomial spline.
struct SplineShape {
    int degree = 3;
    bool periodic = false;
    std::vector<Vec2> control;
    std::vector<double> knots;
    std::vector<double> weights;
    friend bool operator==(const SplineShape&, const SplineShape&) = default;
};

struct PointShape {
    Vec2 position;
    friend bool operator==(const PointShape&, const PointShape&) = default;
};

/// An unbounded line through a point.
struct XlineShape {
    Vec2 point, direction;
    friend bool operator==(const XlineShape&, const XlineShape&) = default;
};

/// A line bounded at its base point only.
struct RayShape {
    Vec2 point, direction;
    friend bool operator==(const RayShape&, const RayShape&) = default;
};

/// Straight segments and arcs joined at vertices. bulges[i] is tan(included angle / 4) of the segment from vertex i
/// to the next one, positive counter-clockwise, 0 for a straight segment; ids[i] is the vertex identifier, 0 for one
/// that was never referenced. Both arrays are as long as vertices.
struct PolylineShape {
    std::vector<Vec2> vertices;
    std::vector<double> bulges;
    std::vector<int> ids;
    bool closed = false;
    friend bool operator==(const PolylineShape&, const PolylineShape&) = default;
};

/// One line of text (text) or a paragraph (mtext).
struct TextShape {
    Vec2 position{};
    double rotation = 0.0;
    double height = 2.5;
    std::string text{};
    bool multiline = false;
    friend bool operator==(const TextShape&, const TextShape&) = default;
};

using Shape = std::variant<LineShape, ArcShape, CircleShape, EllipseShape, EllipticalArcShape, SplineShape, PointShape,
                           XlineShape, RayShape, PolylineShape, TextShape>;

/// A line, bounded or not.
inline bool isStraight(const Shape& shape) {
    return std::holds_alternative<LineShape>(shape) || std::holds_alternative<RayShape>(shape) ||
           std::holds_alternative<XlineShape>(shape);
}

}  // namespace holdfast::geometry
