#include "solver/src/api/EntityChecks.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "geometry/SplineBasis.h"

namespace holdfast::solver {

namespace {

using geometry::isFinite;

constexpr const char* kFinite = "give finite numbers";

std::optional<Error> unless(bool isRight, const char* what, const char* name, const char* remedy) {
    if (isRight)
        return std::nullopt;
    return Error{what, name, remedy};
}

bool areFinite(std::span<const Vec2> points) {
    return std::all_of(points.begin(), points.end(), isFinite);
}

bool areFinite(std::span<const double> numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isfinite(x); });
}

std::optional<Error> faultOfSpan(double start, double end, const char* name) {
    if (!std::isfinite(start) || !std::isfinite(end))
        return Error{"an angle is not a finite number", name, kFinite};
    return unless(end > start && end - start < 2 * std::numbers::pi,
                  "it does not span more than nothing and less "
                  "than a full turn",
                  name,
                  "give an end angle above the start angle by less than 2 pi; for a full turn "
                  "add a circle or an ellipse");
}

/// The knots of a spline that is not periodic, or of one period.
std::optional<Error> faultOfKnots(const SplineData& spline) {
    constexpr const char* name = "spline";
    const std::vector<double>& knots = spline.knots;
    const std::size_t count = spline.control.size(), degree = static_cast<std::size_t>(spline.degree);
    if (!areFinite(knots) || !std::is_sorted(knots.begin(), knots.end()))
        return Error{"its knots are not finite and ascending", name, "give them in ascending order"};
    if (knots.empty())
        return unless(!spline.isPeriodic, "a periodic spline has no knots", name, "give the knots of one period");
    if (!(knots.front() < knots.back()))
        return Error{"its knots are all the same", name, "give a last knot above the first"};
    if (!spline.isPeriodic)
        return unless(knots.size() == count + degree + 1, "degree, control points and knots do not fit together", name,
                      "give as many knots as control points plus degree plus 1");
    const auto atStart = std::count(knots.begin(), knots.end(), knots.front());
    const auto atEnd = std::count(knots.begin(), knots.end(), knots.back());
    return unless(
        atStart == atEnd && atStart <= spline.degree && knots.size() == count + static_cast<std::size_t>(atStart),
        "control points and the knots of one period do not fit together", name,
        "give as many knots as control points plus the multiplicity of the first knot, which is that of the "
        "last one");
}

}  // namespace

std::optional<Error> faultOf(const geometry::LineShape& line) {
    if (!isFinite(line.start) || !isFinite(line.end))
        return Error{"a coordinate is not a finite number", "line", kFinite};
    return unless(!(line.start == line.end), "it has no length", "line", "give two different ends, or add a point");
}

std::optional<Error> faultOf(const geometry::CircleShape& circle) {
    if (!isFinite(circle.centre))
        return Error{"a coordinate is not a finite number", "circle", kFinite};
    return unless(circle.radius > 0.0 && std::isfinite(circle.radius), "its radius is not above 0", "circle",
                  "give a finite radius above 0");
}

std::optional<Error> faultOf(const geometry::ArcShape& arc) {
    if (!isFinite(arc.centre))
        return Error{"a coordinate is not a finite number", "arc", kFinite};
    if (!(arc.radius > 0.0) || !std::isfinite(arc.radius))
        return Error{"its radius is not above 0", "arc", "give a finite radius above 0"};
    return faultOfSpan(arc.startAngle, arc.endAngle, "arc");
}

std::optional<Error> faultOf(const geometry::EllipticalArcShape& arc, const char* name) {
    if (!isFinite(arc.centre) || !isFinite(arc.majorAxis))
        return Error{"a coordinate is not a finite number", name, kFinite};
    if (!(geometry::norm(arc.majorAxis) > 0.0))
        return Error{"its major axis has no length", name, "give the vector from the centre to a major vertex"};
    if (!(arc.ratio > 0.0 && arc.ratio <= 1.0))
        return Error{"its ratio is not above 0 and at most 1", name, "give the minor radius divided by the major one"};
    return faultOfSpan(arc.startParam, arc.endParam, name);
}

std::optional<Error> faultOf(const SplineData& spline) {
    constexpr const char* name = "spline";
    if (spline.degree < 1 || spline.degree > geometry::SplineBasis::kMaxDegree)
        return Error{"its degree is " + std::to_string(spline.degree), name, "give a degree of 1 to 25"};
    if (spline.control.size() < static_cast<std::size_t>(spline.degree) + 1)
        return Error{"it has too few control points", name, "give one more than the degree, or more"};
    if (!areFinite(spline.control))
        return Error{"a control point is not finite", name, kFinite};
    const auto isWeight = [](double w) { return w > 0.0 && std::isfinite(w); };
    if (!spline.weights.empty() && (spline.weights.size() != spline.control.size() ||
                                    !std::all_of(spline.weights.begin(), spline.weights.end(), isWeight)))
        return Error{"its weights are not one above 0 for each control point", name,
                     "give as many as control points, or none"};
    return faultOfKnots(spline);
}

std::optional<Error> faultOf(const PolylineData& polyline) {
    constexpr const char* name = "polyline";
    const std::size_t count = polyline.vertices.size();
    if (count < 2)
        return Error{"it has less than two vertices", name, "give two vertices or more"};
    if (!areFinite(polyline.vertices) || !areFinite(polyline.bulges))
        return Error{"a vertex or a bulge is not finite", name, kFinite};
    if (!polyline.bulges.empty() && polyline.bulges.size() != count)
        return Error{"it has not one bulge for each vertex", name, "give as many as vertices, or none"};
    for (std::size_t i = 0; i < (polyline.isClosed ? count : count - 1); ++i) {
        if (polyline.vertices[i] == polyline.vertices[(i + 1) % count])
            return Error{"segment " + std::to_string(i) + " has no length", name, "leave out vertices that repeat"};
    }
    return std::nullopt;
}

std::optional<Error> faultOf(Vec2 position, double angle, const char* name) {
    return unless(isFinite(position) && std::isfinite(angle), "a number is not finite", name, kFinite);
}

geometry::SplineShape shapeOf(const SplineData& spline) {
    geometry::SplineShape shape{spline.degree, spline.isPeriodic, spline.control, spline.knots, spline.weights};
    if (shape.knots.empty()) {
        const int inner = static_cast<int>(spline.control.size()) - spline.degree;
        for (int i = -spline.degree; i <= inner + spline.degree; ++i)
            shape.knots.push_back(std::clamp(i, 0, inner));
    }
    return shape;
}

geometry::PolylineShape shapeOf(const PolylineData& polyline) {
    const std::size_t count = polyline.vertices.size();
    geometry::PolylineShape shape{polyline.vertices, polyline.bulges, std::vector<int>(count, 0), polyline.isClosed};
    shape.bulges.resize(count, 0.0);
    return shape;
}

std::optional<Error> faultOf(const detail::SketchEntity& entity, std::span<const double> values) {
    if (values.size() != detail::at(entity.valueCount))
        return Error{
            "it has " + std::to_string(entity.valueCount) + " numbers and not " + std::to_string(values.size()),
            entity.id, "give one for each that Sketch::values returns"};
    if (!areFinite(values))
        return Error{"a number is not finite", entity.id, kFinite};
    using enum detail::EntityKind;
    if ((entity.kind == circle || entity.kind == arc) && !(values[2] > 0.0))
        return Error{"its radius is not above 0", entity.id, "give a radius above 0"};
    if ((entity.kind == ellipse || entity.kind == ellipticalArc) &&
        !(values[4] > 0.0 && std::hypot(values[2], values[3]) > 0.0))
        return Error{"a radius is not above 0", entity.id, "give radii above 0"};
    for (const int bulge : entity.bulgeValues) {
        if (bulge >= 0 && values[detail::at(bulge - entity.firstValue)] == 0.0)
            return Error{"an arc segment has a bulge of 0", entity.id, "segments stay straight, or arcs, for good"};
    }
    return std::nullopt;
}

}  // namespace holdfast::solver
