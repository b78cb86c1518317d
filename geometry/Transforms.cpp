#include "geometry/Transforms.h"

#include <cmath>
#include <string>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Vec2.h"

namespace holdfast::geometry {
namespace {

/// The unit vector at an angle, its zeros exact at the quarter turns.
Vec2 direction(double angle) {
    constexpr double kRounding = 4e-16;
    Vec2 d = polar(angle);
    if (std::abs(d.x) < kRounding) {
        d = {0.0, std::copysign(1.0, d.y)};
    }
    if (std::abs(d.y) < kRounding) {
        d = {std::copysign(1.0, d.x), 0.0};
    }
    return d;
}

/// Turns so that the x axis comes to a unit vector times the scale, and `from` to `to`.
PlaneTransform turned(Vec2 along, double scale, Vec2 from, Vec2 to) {
    PlaneTransform transform{scale * along, scale * leftOf(along), {}, scale, false};
    transform.offset = to - transform.pointAfter(from);
    return transform;
}

void requireApart(Vec2 a, Vec2 b, const char* what) {
    if (a == b) {
        throw GeometryError(std::string(what) + " are one point; give two different ones");
    }
}

/// The least angle from 0 up with the same direction, for a value that has left the first turn.
double inFirstTurn(double angle) {
    return angle - kTurn * std::floor(angle / kTurn);
}

struct Mover {
    const PlaneTransform& t;

    Shape operator()(const LineShape& s) const { return LineShape{t.pointAfter(s.start), t.pointAfter(s.end)}; }
    Shape operator()(const ArcShape& s) const {
        ArcShape arc{t.pointAfter(s.centre), t.scale * s.radius, s.startAngle, s.endAngle};
        if (t.angleAfter(0.0) != 0.0 || t.mirrors) {
            arc.startAngle = inFirstTurn(t.angleAfter(t.mirrors ? s.endAngle : s.startAngle));
            arc.endAngle = arc.startAngle + (s.endAngle - s.startAngle);
        }
        return arc;
    }
    Shape operator()(const CircleShape& s) const { return CircleShape{t.pointAfter(s.centre), t.scale * s.radius}; }
    Shape operator()(const EllipseShape& s) const {
        return EllipseShape{t.pointAfter(s.centre), t.vectorAfter(s.majorAxis), s.ratio};
    }
    Shape operator()(const EllipticalArcShape& s) const {
        EllipticalArcShape arc{t.pointAfter(s.centre), t.vectorAfter(s.majorAxis), s.ratio, s.startParam, s.endParam};
        if (t.mirrors) {
            arc.startParam = inFirstTurn(-s.endParam);
            arc.endParam = arc.startParam + (s.endParam - s.startParam);
        }
        return arc;
    }
    Shape operator()(SplineShape s) const {
        for (Vec2& control : s.control) {
            control = t.pointAfter(control);
        }
        return s;
    }
    Shape operator()(const PointShape& s) const { return PointShape{t.pointAfter(s.position)}; }
    Shape operator()(const XlineShape& s) const {
        return XlineShape{t.pointAfter(s.point), t.directionAfter(s.direction)};
    }
    Shape operator()(const RayShape& s) const { return RayShape{t.pointAfter(s.point), t.directionAfter(s.direction)}; }
    Shape operator()(PolylineShape s) const {
        for (Vec2& vertex : s.vertices) {
            vertex = t.pointAfter(vertex);
        }
        for (double& bulge : s.bulges) {
            bulge = t.mirrors && bulge != 0.0 ? -bulge : bulge;
        }
        return s;
    }
    Shape operator()(TextShape s) const {
        s.position = t.pointAfter(s.position);
        s.height *= t.scale;
        s.rotation = rotationAfter(s.rotation);
        return s;
    }

    double rotationAfter(double before) const {
        if (!t.mirrors && t.angleAfter(0.0) == 0.0) {
            return before;
        }
        const double after = t.angleAfter(before);
        const bool runsBackwards = t.mirrors && dot(polar(after), polar(before)) < -1e-12;
        return std::remainder(runsBackwards ? after + kPi : after, kTurn);
    }
};

}  // namespace

Vec2 PlaneTransform::pointAfter(Vec2 point) const {
    return vectorAfter(point) + offset;
}

Vec2 PlaneTransform::vectorAfter(Vec2 vector) const {
    return vector.x * xAxis + vector.y * yAxis;
}

Vec2 PlaneTransform::directionAfter(Vec2 vector) const {
    return (1.0 / scale) * vectorAfter(vector);
}

double PlaneTransform::angleAfter(double angle) const {
    const double ofAxis = std::atan2(xAxis.y, xAxis.x);
    return mirrors ? ofAxis - angle : ofAxis + angle;
}

PlaneTransform translation(Vec2 by) {
    PlaneTransform transform;
    transform.offset = by;
    return transform;
}

PlaneTransform rotation(Vec2 centre, double angle) {
    return turned(direction(angle), 1.0, centre, centre);
}

PlaneTransform scaling(Vec2 centre, double factor) {
    return turned({1.0, 0.0}, factor, centre, centre);
}

PlaneTransform reflection(Vec2 first, Vec2 second) {
    requireApart(first, second, "the points of the mirror line");
    const Vec2 along = unit(second - first);
    // The x axis goes to twice the angle of the mirror line; exact for level and upright lines.
    const Vec2 x{along.x * along.x - along.y * along.y, 2.0 * along.x * along.y};
    PlaneTransform transform{x, {x.y, -x.x}, {}, 1.0, true};
    transform.offset = first - transform.vectorAfter(first);
    return transform;
}

PlaneTransform alignment(Vec2 from, Vec2 fromToward, Vec2 to, Vec2 toToward, bool scaled) {
    requireApart(from, fromToward, "the two source points");
    requireApart(to, toToward, "the two destination points");
    const Vec2 before = fromToward - from;
    const Vec2 after = toToward - to;
    // The quotient of the two as complex numbers turns the one direction into the other.
    const Vec2 along = unit({dot(before, after), cross(before, after)});
    return turned(along, scaled ? norm(after) / norm(before) : 1.0, from, to);
}

Shape transformed(const Shape& shape, const PlaneTransform& transform) {
    return std::visit(Mover{transform}, shape);
}

}  // namespace holdfast::geometry
