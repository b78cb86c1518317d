#include "editing/Figures.h"

#include <algorithm>
#include <cmath>

#include "editing/EditContext.h"
#include "geometry/Angles.h"

namespace holdfast::editing {

namespace {

double directionOf(Vec2 v) {
    return std::atan2(v.y, v.x);
}

/// The angle above another one, by a full turn at most.
double raisedAbove(double angle, double start) {
    while (angle <= start)
        angle += 2.0 * kPi;
    return angle;
}

struct ShapeOf {
    Shape operator()(const LineShape& line) const { return line; }
    Shape operator()(const CircleShape& circle) const { return circle; }
    Shape operator()(const PointShape& point) const { return point; }
    Shape operator()(const DrawnArc& arc) const {
        if (arc.from == arc.centre || arc.to == arc.centre)
            throw EditError("an arc cannot begin or end in its centre; give other points");
        const double start = directionOf(arc.from - arc.centre);
        return ArcShape{arc.centre, distance(arc.centre, arc.from), start,
                        raisedAbove(directionOf(arc.to - arc.centre), start)};
    }
    Shape operator()(const DrawnEllipse& ellipse) const {
        if (!ellipse.span)
            return EllipseShape{ellipse.centre, ellipse.majorAxis, ellipse.ratio};
        const double start = inRadians(ellipse.span->from);
        return EllipticalArcShape{ellipse.centre, ellipse.majorAxis, ellipse.ratio, start,
                                  raisedAbove(inRadians(ellipse.span->to), start)};
    }
    Shape operator()(const DrawnSpline& spline) const {
        const int count = static_cast<int>(spline.control.size());
        if (spline.degree < 1)
            throw EditError("the degree of a spline is 1 or more, not " + std::to_string(spline.degree));
        if (count <= spline.degree)
            throw EditError("a spline of degree " + std::to_string(spline.degree) + " takes " +
                            std::to_string(spline.degree + 1) + " control points or more");
        if (std::all_of(spline.control.begin(), spline.control.end(),
                        [&](Vec2 point) { return point == spline.control.front(); }))
            throw EditError("a spline needs different control points; all of them are " + spoken(spline.control[0]));
        SplineShape shape{
            .degree = spline.degree, .periodic = spline.closed, .control = spline.control, .knots = {}, .weights = {}};
        if (spline.closed) {
            for (int i = 0; i <= count; ++i)
                shape.knots.push_back(i);
            return shape;
        }
        const int spans = count - spline.degree;
        for (int i = -spline.degree; i <= spans + spline.degree; ++i)
            shape.knots.push_back(std::clamp(i, 0, spans));
        return shape;
    }
    Shape operator()(const DrawnPolyline& polyline) const {
        const std::size_t count = polyline.vertices.size();
        for (std::size_t i = 0; count > 1 && i < count - (polyline.closed ? 0 : 1); ++i)
            if (polyline.vertices[i] == polyline.vertices[(i + 1) % count])
                throw EditError("vertex " + std::to_string((i + 1) % count) + " of the polyline is where vertex " +
                                std::to_string(i) + " is, at " + spoken(polyline.vertices[i]) +
                                "; give each corner once");
        return PolylineShape{polyline.vertices, polyline.bulges, std::vector<int>(polyline.vertices.size(), 0),
                             polyline.closed};
    }
    Shape operator()(const DrawnEndless& line) const {
        if (line.point == line.through)
            throw EditError("a line without an end needs two different points");
        const Vec2 direction = unit(line.through - line.point);
        if (line.isRay)
            return RayShape{line.point, direction};
        return XlineShape{line.point, direction};
    }
    Shape operator()(const DrawnText& text) const {
        return TextShape{
            .position = text.position, .rotation = inRadians(text.degrees), .height = text.height, .text = text.text};
    }
};

}  // namespace

Shape shapeOf(const Figure& figure) {
    return std::visit(ShapeOf(), figure);
}

}  // namespace holdfast::editing
