#include "geometry/curves/Soundness.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <string>

#include "geometry/GeometryError.h"
#include "geometry/SplineBasis.h"
#include "geometry/Vec2.h"

namespace holdfast::geometry {
namespace {

[[noreturn]] void refuse(const Shape& shape, const std::string& what) {
    throw GeometryError(std::string(kindName(shape)) + ": " + what);
}

class Check {
public:
    explicit Check(const Shape& shape) : m_shape(shape) {}

    void operator()(const LineShape& line) const {
        finite({line.start, line.end});
        require(line.start != line.end, "start and end are the same point; give two different ones");
    }
    void operator()(const ArcShape& arc) const {
        circle(arc.centre, arc.radius);
        range(arc.startAngle, arc.endAngle);
    }
    void operator()(const CircleShape& shape) const { circle(shape.centre, shape.radius); }
    void operator()(const EllipseShape& shape) const { ellipse(shape.centre, shape.majorAxis, shape.ratio); }
    void operator()(const EllipticalArcShape& arc) const {
        ellipse(arc.centre, arc.majorAxis, arc.ratio);
        range(arc.startParam, arc.endParam);
    }
    void operator()(const XlineShape& line) const { direction(line.point, line.direction); }
    void operator()(const RayShape& ray) const { direction(ray.point, ray.direction); }
    void operator()(const SplineShape& spline) const;
    void operator()(const PolylineShape& polyline) const;
    void operator()(const PointShape&) const { require(false, "is not a curve"); }
    void operator()(const TextShape&) const { require(false, "is not a curve"); }

private:
    void require(bool holds, const std::string& what) const {
        if (!holds) {
            refuse(m_shape, what);
        }
    }
    void finite(std::span<const Vec2> points) const {
        require(std::all_of(points.begin(), points.end(), isFinite), "a coordinate is not a finite number");
    }
    void finite(std::initializer_list<Vec2> points) const { finite(std::span(points.begin(), points.size())); }
    void finite(std::span<const double> values, const char* name) const {
        require(std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); }),
                std::string(name) + " holds a value that is not a finite number");
    }
    void circle(Vec2 centre, double radius) const {
        finite({centre});
        require(std::isfinite(radius) && radius > 0.0,
                "radius is " + std::to_string(radius) + "; it must be finite and positive");
    }
    void ellipse(Vec2 centre, Vec2 majorAxis, double ratio) const {
        finite({centre, majorAxis});
        require(majorAxis != Vec2{}, "the major axis has no length");
        require(ratio > 0.0 && ratio <= 1.0, "ratio is " + std::to_string(ratio) + "; it must lie above 0 and up to 1");
    }
    void range(double first, double last) const {
        require(std::isfinite(first) && std::isfinite(last) && first < last,
                "runs from " + std::to_string(first) + " to " + std::to_string(last) + "; the end must be greater");
    }
    void direction(Vec2 point, Vec2 along) const {
        finite({point, along});
        require(along != Vec2{}, "the direction has no length");
    }
    void knotCount(const SplineShape& spline) const;
    void multiplicities(const SplineShape& spline) const;

    const Shape& m_shape;
};

std::size_t runFrom(const std::vector<double>& knots, std::size_t first) {
    std::size_t next = first + 1;
    while (next < knots.size() && knots[next] == knots[first]) {
        ++next;
    }
    return next - first;
}

/// One period has as many control points as knots without those of its first value.
void Check::knotCount(const SplineShape& spline) const {
    const std::size_t found = spline.knots.size();
    if (spline.periodic) {
        require(found > runFrom(spline.knots, 0), "the knots do not increase");
        require(found - runFrom(spline.knots, 0) == spline.control.size(),
                std::to_string(found) + " knots do not make a period of " + std::to_string(spline.control.size()) +
                    " control points");
        return;
    }
    const std::size_t expected = spline.control.size() + static_cast<std::size_t>(spline.degree) + 1;
    require(found == expected, "has " + std::to_string(found) + " knots; degree " + std::to_string(spline.degree) +
                                   " and " + std::to_string(spline.control.size()) + " control points take " +
                                   std::to_string(expected));
}

void Check::multiplicities(const SplineShape& spline) const {
    const std::size_t degree = static_cast<std::size_t>(spline.degree);
    const std::size_t atEnds = spline.periodic ? degree : degree + 1;
    for (std::size_t i = 0; i < spline.knots.size();) {
        const std::size_t run = runFrom(spline.knots, i);
        const bool isEnd = i == 0 || i + run == spline.knots.size();
        require(run <= (isEnd ? atEnds : degree), "knot " + std::to_string(spline.knots[i]) + " stands " +
                                                      std::to_string(run) + " times, too often for degree " +
                                                      std::to_string(degree));
        i += run;
    }
}

void Check::operator()(const SplineShape& spline) const {
    finite(std::span(spline.control));
    finite(spline.knots, "knots");
    finite(spline.weights, "weights");
    require(spline.degree >= 1 && spline.degree <= SplineBasis::kMaxDegree,
            "degree is " + std::to_string(spline.degree) + "; it must lie between 1 and " +
                std::to_string(SplineBasis::kMaxDegree));
    require(spline.control.size() >= 2, "needs two control points or more");
    require(!spline.knots.empty() && std::is_sorted(spline.knots.begin(), spline.knots.end()) &&
                spline.knots.front() < spline.knots.back(),
            "the knots must not fall, and must rise somewhere");
    knotCount(spline);
    multiplicities(spline);
    require(spline.weights.empty() || spline.weights.size() == spline.control.size(),
            "has " + std::to_string(spline.weights.size()) + " weights for " + std::to_string(spline.control.size()) +
                " control points");
    require(std::all_of(spline.weights.begin(), spline.weights.end(), [](double w) { return w > 0.0; }),
            "the weights must be positive");
}

void Check::operator()(const PolylineShape& polyline) const {
    finite(std::span(polyline.vertices));
    finite(polyline.bulges, "bulges");
    require(polyline.vertices.size() >= 2, "needs two vertices or more");
    require(polyline.bulges.size() == polyline.vertices.size(), "needs one bulge for each vertex");
    require(polyline.ids.size() == polyline.vertices.size(), "needs one identifier for each vertex");
    require(std::any_of(polyline.vertices.begin(), polyline.vertices.end(),
                        [&](Vec2 v) { return v != polyline.vertices.front(); }),
            "all vertices are the same point");
}

}  // namespace

bool isCurve(const Shape& shape) {
    return !std::holds_alternative<PointShape>(shape) && !std::holds_alternative<TextShape>(shape);
}

const char* kindName(const Shape& shape) {
    static constexpr const char* kNames[] = {"line",  "arc", "circle",   "ellipse", "elliptical arc", "spline", "point",
                                             "xline", "ray", "polyline", "text"};
    static_assert(std::size(kNames) == std::variant_size_v<Shape>, "one name for each kind of shape");
    return kNames[shape.index()];
}

void requireSound(const Shape& shape) {
    std::visit(Check(shape), shape);
}

void requireFinite(double alongCurve) {
    if (!std::isfinite(alongCurve))
        throw GeometryError("a curve parameter or distance is not a finite number");
}

}  // namespace holdfast::geometry
