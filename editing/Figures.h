#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "editing/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::editing {

// What a user can draw, by what a user gives for it: points, lengths in the drawing's length unit, degrees.

/// Counter-clockwise from one point to the direction of another; its radius is the distance of the first.
struct DrawnArc {
    Vec2 centre, from, to;
    friend bool operator==(const DrawnArc&, const DrawnArc&) = default;
};

/// Eccentric angles, counter-clockwise from the major axis, between which an ellipse is drawn.
struct EllipseSpan {
    double from = 0.0, to = 360.0;
    friend bool operator==(const EllipseSpan&, const EllipseSpan&) = default;
};

struct DrawnEllipse {
    Vec2 centre, majorAxis;             ///< the axis from the centre to a major vertex
    double ratio = 1.0;                 ///< minor / major, in (0, 1]
    std::optional<EllipseSpan> span{};  ///< none: all of it
    friend bool operator==(const DrawnEllipse&, const DrawnEllipse&) = default;
};

/// A uniform B-spline, which begins in its first control point and ends in its last one, or is periodic.
struct DrawnSpline {
    std::vector<Vec2> control;
    int degree = 3;
    bool closed = false;
    friend bool operator==(const DrawnSpline&, const DrawnSpline&) = default;
};

struct DrawnPolyline {
    std::vector<Vec2> vertices;
    std::vector<double> bulges;  ///< of the segment behind each vertex: tan(angle / 4), 0 for a straight one
    bool closed = false;
    friend bool operator==(const DrawnPolyline&, const DrawnPolyline&) = default;
};

/// Through two points, without an end, or from the first one on.
struct DrawnEndless {
    Vec2 point, through;
    bool isRay = false;
    friend bool operator==(const DrawnEndless&, const DrawnEndless&) = default;
};

struct DrawnText {
    std::string text;
    Vec2 position;
    double height = 2.5, degrees = 0.0;
    friend bool operator==(const DrawnText&, const DrawnText&) = default;
};

using Figure = std::variant<LineShape, CircleShape, DrawnArc, DrawnPolyline, PointShape, DrawnEllipse, DrawnSpline,
                            DrawnEndless, DrawnText>;

/// The shape of a figure; it need not be sound (a radius of 0). Figures that no shape can have are answered with an
/// EditError: two equal points where a direction is asked for, too few control points.
Shape shapeOf(const Figure& figure);

}  // namespace holdfast::editing
