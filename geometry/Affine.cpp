#include "geometry/Affine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/Angles.h"
#include "geometry/Conics.h"
#include "geometry/Vec2.h"

namespace holdfast::geometry {
namespace {

/// Lengths and angles that differ by less than this part are the same but for rounding.
constexpr double kRounding = 1e-13;

/// An ellipse by two of its radii that were at right angles before the transform, and the course of its parameter.
struct Conjugate {
    Vec2 centre, first, second;

    /// From `start` on over `sweep`, in the parameter of these radii. Half axes are where the distance from the centre
    /// is greatest and least, tan 2t = 2 p q / (p p - q q) (Rytz's problem, solved for the parameter).
    EllipticalArcShape arc(double start, double sweep) const {
        const double t = 0.5 * std::atan2(2.0 * dot(first, second), dot(first, first) - dot(second, second));
        const Vec2 major = std::cos(t) * first + std::sin(t) * second;
        const Vec2 minor = std::cos(t) * second - std::sin(t) * first;
        const bool runsBackwards = cross(major, minor) < 0.0;
        double from = runsBackwards ? t - start - sweep : start - t;
        from -= kTurn * std::floor(from / kTurn);
        return {centre, major, std::min(1.0, norm(minor) / norm(major)), from, from + sweep};
    }

    EllipseShape whole() const {
        const EllipticalArcShape all = arc(0.0, kTurn);
        return {all.centre, all.majorAxis, all.ratio};
    }
};

/// The segments of a polyline one after the other as pieces of one spline (L. Piegl, W. Tiller, The NURBS Book, 7.3:
/// an arc's middle control point has the cosine of half its angle for a weight).
class PolylineSpline {
public:
    explicit PolylineSpline(const PolylineShape& polyline) : m_polyline(polyline) {
        m_spline.degree = 2;
        m_spline.control.push_back(polyline.vertices.front());
        m_spline.weights.push_back(1.0);
        m_spline.knots.assign(3, 0.0);
    }

    SplineShape spline() && {
        const std::size_t count = m_polyline.vertices.size();
        for (std::size_t i = 0; i + (m_polyline.closed ? 0 : 1) < count; ++i)
            add(m_polyline.vertices[i], m_polyline.vertices[(i + 1) % count], m_polyline.bulges[i]);
        m_spline.knots.push_back(m_spline.knots.back());
        return std::move(m_spline);
    }

private:
    void add(Vec2 from, Vec2 to, double bulge) {
        if (from == to)
            return;
        if (bulge == 0.0)
            return addPiece(0.5 * (from + to), 1.0, to);
        const Vec2 centre = centreOfBulge(from, to, bulge);
        const double angle = angleOfBulge(bulge);
        const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(angle) / kQuarterTurn - kRounding)));
        const double half = 0.5 * angle / pieces;
        for (int i = 0; i < pieces; ++i) {
            const Vec2 middle = turned(from - centre, (2 * i + 1) * half);
            const Vec2 end = i + 1 == pieces ? to : centre + turned(from - centre, (2 * i + 2) * half);
            addPiece(centre + (1.0 / std::cos(half)) * middle, std::cos(half), end);
        }
    }

    static Vec2 turned(Vec2 arm, double angle) { return std::cos(angle) * arm + std::sin(angle) * leftOf(arm); }

    void addPiece(Vec2 middle, double weight, Vec2 end) {
        const double knot = m_spline.knots.back() + 1.0;
        m_spline.control.insert(m_spline.control.end(), {middle, end});
        m_spline.weights.insert(m_spline.weights.end(), {weight, 1.0});
        m_spline.knots.insert(m_spline.knots.end(), {knot, knot});
    }

    const PolylineShape& m_polyline;
    SplineShape m_spline;
};

struct Distorter {
    const Affine& t;

    Conjugate round(Vec2 centre, Vec2 first, Vec2 second) const {
        return {t.pointAfter(centre), t.vectorAfter(first), t.vectorAfter(second)};
    }
    Conjugate circle(Vec2 centre, double radius) const { return round(centre, {radius, 0.0}, {0.0, radius}); }
    Conjugate ellipse(Vec2 centre, Vec2 major, double ratio) const {
        return round(centre, major, ratio * leftOf(major));
    }

    Shape operator()(const LineShape& s) const { return LineShape{t.pointAfter(s.start), t.pointAfter(s.end)}; }
    Shape operator()(const ArcShape& s) const {
        return circle(s.centre, s.radius).arc(s.startAngle, s.endAngle - s.startAngle);
    }
    Shape operator()(const CircleShape& s) const { return circle(s.centre, s.radius).whole(); }
    Shape operator()(const EllipseShape& s) const { return ellipse(s.centre, s.majorAxis, s.ratio).whole(); }
    Shape operator()(const EllipticalArcShape& s) const {
        return ellipse(s.centre, s.majorAxis, s.ratio).arc(s.startParam, s.endParam - s.startParam);
    }
    Shape operator()(SplineShape s) const {
        for (Vec2& control : s.control)
            control = t.pointAfter(control);
        return s;
    }
    Shape operator()(const PointShape& s) const { return PointShape{t.pointAfter(s.position)}; }
    Shape operator()(const XlineShape& s) const {
        return XlineShape{t.pointAfter(s.point), unit(t.vectorAfter(s.direction))};
    }
    Shape operator()(const RayShape& s) const {
        return RayShape{t.pointAfter(s.point), unit(t.vectorAfter(s.direction))};
    }
    Shape operator()(PolylineShape s) const {
        if (std::any_of(s.bulges.begin(), s.bulges.end(), [](double bulge) { return bulge != 0.0; }))
            return (*this)(PolylineSpline(s).spline());
        for (Vec2& vertex : s.vertices)
            vertex = t.pointAfter(vertex);
        return s;
    }
    Shape operator()(TextShape s) const {
        const Vec2 before = polar(s.rotation);
        Vec2 along = unit(t.vectorAfter(before));
        s.height *= std::abs(cross(along, t.vectorAfter(leftOf(before))));
        if (t.determinant() < 0.0 && dot(along, before) < 0.0)
            along = -along;  // a mirrored text stays readable
        s.position = t.pointAfter(s.position);
        s.rotation = std::atan2(along.y, along.x);
        return s;
    }
};

}  // namespace

Affine affineOf(const PlaneTransform& transform) {
    return {transform.xAxis, transform.yAxis, transform.offset};
}

Affine chained(const Affine& outer, const Affine& inner) {
    return {outer.vectorAfter(inner.xAxis), outer.vectorAfter(inner.yAxis), outer.pointAfter(inner.offset)};
}

std::optional<PlaneTransform> similarityOf(const Affine& transform) {
    const double x = norm(transform.xAxis), y = norm(transform.yAxis);
    if (std::abs(x - y) > kRounding * x || std::abs(dot(transform.xAxis, transform.yAxis)) > kRounding * x * y)
        return std::nullopt;
    return PlaneTransform{transform.xAxis, transform.yAxis, transform.offset, x, transform.determinant() < 0.0};
}

Shape transformed(const Shape& shape, const Affine& transform) {
    if (const std::optional<PlaneTransform> similarity = similarityOf(transform))
        return transformed(shape, *similarity);
    return std::visit(Distorter{transform}, shape);
}

}  // namespace holdfast::geometry
