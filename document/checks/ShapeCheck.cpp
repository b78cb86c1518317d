#include "document/checks/ShapeCheck.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "document/text/NumberText.h"
#include "document/text/Utf8.h"
#include "geometry/Angles.h"
#include "geometry/SplineBasis.h"
#include "geometry/Tolerances.h"

namespace holdfast::document {
namespace {

using MaybeFault = std::optional<Fault>;

std::string spelt(double value) {
    if (std::isnan(value))
        return "not a number (NaN)";
    if (std::isinf(value))
        return value > 0 ? "infinity" : "minus infinity";
    return numberText(value);
}

std::string item(std::string_view list, std::size_t index) {
    return std::string(list) + '/' + std::to_string(index);
}

MaybeFault finite(const std::string& place, double value) {
    if (std::isfinite(value))
        return std::nullopt;
    return Fault{place, spelt(value), "a finite number"};
}

MaybeFault finite(const std::string& place, Vec2 point) {
    if (MaybeFault fault = finite(place + "/0", point.x))
        return fault;
    return finite(place + "/1", point.y);
}

MaybeFault finite(const std::string& place, std::span<const double> values) {
    const auto wrong = std::find_if(values.begin(), values.end(), [](double v) { return !std::isfinite(v); });
    if (wrong == values.end())
        return std::nullopt;
    return finite(item(place, static_cast<std::size_t>(wrong - values.begin())), *wrong);
}

MaybeFault finite(const std::string& place, std::span<const Vec2> points) {
    const auto wrong =
        std::find_if(points.begin(), points.end(), [](Vec2 p) { return !std::isfinite(p.x) || !std::isfinite(p.y); });
    if (wrong == points.end())
        return std::nullopt;
    return finite(item(place, static_cast<std::size_t>(wrong - points.begin())), *wrong);
}

MaybeFault positive(const std::string& place, double value) {
    if (std::isfinite(value) && value > 0.0)
        return std::nullopt;
    return Fault{place, spelt(value), "a " + place + " above 0"};
}

MaybeFault lengthy(const std::string& place, Vec2 vector) {
    if (MaybeFault fault = finite(place, vector))
        return fault;
    if (vector.x != 0.0 || vector.y != 0.0)
        return std::nullopt;
    return Fault{place, "a vector of length 0", "a vector that points somewhere"};
}

MaybeFault first(std::initializer_list<MaybeFault> faults) {
    for (const MaybeFault& fault : faults) {
        if (fault)
            return fault;
    }
    return std::nullopt;
}

/// Both ends finite, the second above the first and at most one full turn beyond it.
MaybeFault forward(const std::string& startField, double start, const std::string& endField, double end) {
    if (MaybeFault fault = first({finite(startField, start), finite(endField, end)}))
        return fault;
    if (end <= start)
        return Fault{endField, spelt(end), "an angle above " + startField + ", " + spelt(start) + "; add 2 pi"};
    if (end - start > kTurn + kSameDirection)
        return Fault{endField, spelt(end), "at most one full turn after " + startField + ", " + spelt(start)};
    return std::nullopt;
}

MaybeFault check(const LineShape& line) {
    return first({finite("start", line.start), finite("end", line.end)});
}

MaybeFault check(const ArcShape& arc) {
    return first({finite("centre", arc.centre), positive("radius", arc.radius),
                  forward("start_angle", arc.startAngle, "end_angle", arc.endAngle)});
}

MaybeFault check(const CircleShape& circle) {
    return first({finite("centre", circle.centre), positive("radius", circle.radius)});
}

MaybeFault checkAxes(Vec2 centre, Vec2 majorAxis, double ratio) {
    if (MaybeFault fault = first({finite("centre", centre), lengthy("major_axis", majorAxis)}))
        return fault;
    if (std::isfinite(ratio) && ratio > 0.0 && ratio <= 1.0)
        return std::nullopt;
    return Fault{"ratio", spelt(ratio), "minor / major, above 0 and at most 1; swap the axes if it is larger"};
}

MaybeFault check(const EllipseShape& ellipse) {
    return checkAxes(ellipse.centre, ellipse.majorAxis, ellipse.ratio);
}

MaybeFault check(const EllipticalArcShape& arc) {
    return first({checkAxes(arc.centre, arc.majorAxis, arc.ratio),
                  forward("start_param", arc.startParam, "end_param", arc.endParam)});
}

std::size_t repeatsAtFront(std::span<const double> knots) {
    const auto differs = std::find_if(knots.begin(), knots.end(), [&](double k) { return k != knots.front(); });
    return static_cast<std::size_t>(differs - knots.begin());
}

std::size_t repeatsAtBack(std::span<const double> knots) {
    const auto differs = std::find_if(knots.rbegin(), knots.rend(), [&](double k) { return k != knots.back(); });
    return static_cast<std::size_t>(differs - knots.rbegin());
}

MaybeFault ascending(std::span<const double> knots) {
    const auto drop = std::adjacent_find(knots.begin(), knots.end(), [](double a, double b) { return b < a; });
    if (drop != knots.end())
        return Fault{item("knots", static_cast<std::size_t>(drop - knots.begin()) + 1), spelt(*(drop + 1)),
                     "knots that never decrease; the one before is " + spelt(*drop)};
    if (knots.front() == knots.back())
        return Fault{"knots", "all knots equal", "knots that span an interval"};
    return std::nullopt;
}

/// The longest run of one knot; more than most breaks the curve apart.
MaybeFault runsAtMost(std::size_t most, std::span<const double> knots) {
    for (std::size_t i = most; i < knots.size(); ++i) {
        if (knots[i] == knots[i - most])
            return Fault{
                item("knots", i),
                "the knot " + spelt(knots[i]) + " more than " + std::to_string(most) + (most == 1 ? " time" : " times"),
                "each knot at most that often for this degree"};
    }
    return std::nullopt;
}

MaybeFault countsFit(std::string_view what, std::size_t found, std::size_t needed, const std::string& why) {
    if (found == needed)
        return std::nullopt;
    return Fault{std::string(what), std::to_string(found) + " " + std::string(what),
                 std::to_string(needed) + ": " + why};
}

MaybeFault checkOpenKnots(const SplineShape& spline) {
    const std::size_t degree = static_cast<std::size_t>(spline.degree);
    if (MaybeFault fault = countsFit("knots", spline.knots.size(), spline.control.size() + degree + 1,
                                     "as many as control points + degree + 1"))
        return fault;
    if (MaybeFault fault = ascending(spline.knots))
        return fault;
    if (spline.knots[degree] == spline.knots[spline.control.size()])
        return Fault{
            "knots",
            "no interval between the knots " + std::to_string(degree) + " and " + std::to_string(spline.control.size()),
            "a curve of some length between them"};
    return runsAtMost(degree + 1, spline.knots);
}

MaybeFault checkPeriodicKnots(const SplineShape& spline) {
    if (spline.knots.size() < 2)
        return Fault{"knots", std::to_string(spline.knots.size()) + " knots", "the knots of one period"};
    if (MaybeFault fault = ascending(spline.knots))
        return fault;
    const std::size_t repeats = repeatsAtFront(spline.knots);
    if (repeats != repeatsAtBack(spline.knots))
        return Fault{"knots",
                     "the first knot " + std::to_string(repeats) + " times and the last one " +
                         std::to_string(repeatsAtBack(spline.knots)) + " times",
                     "both equally often in a periodic spline"};
    if (MaybeFault fault = countsFit("knots", spline.knots.size(), spline.control.size() + repeats,
                                     "as many as control points + repeats of the first knot in a periodic spline"))
        return fault;
    return runsAtMost(static_cast<std::size_t>(spline.degree), spline.knots);
}

MaybeFault checkWeights(const SplineShape& spline) {
    if (spline.weights.empty())
        return std::nullopt;
    if (MaybeFault fault = countsFit("weights", spline.weights.size(), spline.control.size(), "one a control point"))
        return fault;
    const auto wrong = std::find_if(spline.weights.begin(), spline.weights.end(),
                                    [](double w) { return !std::isfinite(w) || w <= 0.0; });
    if (wrong == spline.weights.end())
        return std::nullopt;
    return Fault{item("weights", static_cast<std::size_t>(wrong - spline.weights.begin())), spelt(*wrong),
                 "a weight above 0"};
}

MaybeFault check(const SplineShape& spline) {
    if (spline.degree < 1 || spline.degree > SplineBasis::kMaxDegree)
        return Fault{"degree", std::to_string(spline.degree),
                     "a degree from 1 to " + std::to_string(SplineBasis::kMaxDegree)};
    const std::size_t fewest = static_cast<std::size_t>(spline.degree) + (spline.periodic ? 0 : 1);
    if (spline.control.size() < std::max<std::size_t>(fewest, 2))
        return Fault{"control", std::to_string(spline.control.size()) + " control points",
                     "at least " + std::to_string(std::max<std::size_t>(fewest, 2)) + " for degree " +
                         std::to_string(spline.degree)};
    if (MaybeFault fault = first({finite("control", spline.control), finite("knots", spline.knots)}))
        return fault;
    if (MaybeFault fault = spline.periodic ? checkPeriodicKnots(spline) : checkOpenKnots(spline))
        return fault;
    return checkWeights(spline);
}

MaybeFault check(const PointShape& point) {
    return finite("position", point.position);
}

MaybeFault check(const XlineShape& xline) {
    return first({finite("point", xline.point), lengthy("direction", xline.direction)});
}

MaybeFault check(const RayShape& ray) {
    return first({finite("point", ray.point), lengthy("direction", ray.direction)});
}

MaybeFault checkVertexIds(std::span<const int> ids) {
    std::set<int> seen;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i] < 0)
            return Fault{item("ids", i), std::to_string(ids[i]), "a vertex identifier above 0, or 0 for none"};
        if (ids[i] > 0 && !seen.insert(ids[i]).second)
            return Fault{item("ids", i), std::to_string(ids[i]) + " a second time",
                         "each vertex identifier once in a polyline"};
    }
    return std::nullopt;
}

MaybeFault check(const PolylineShape& polyline) {
    const std::size_t count = polyline.vertices.size();
    if (count < 2)
        return Fault{"vertices", std::to_string(count) + (count == 1 ? " vertex" : " vertices"), "at least two"};
    if (MaybeFault fault = first({countsFit("bulges", polyline.bulges.size(), count, "one a vertex"),
                                  countsFit("ids", polyline.ids.size(), count, "one a vertex")}))
        return fault;
    if (MaybeFault fault = first({finite("vertices", polyline.vertices), finite("bulges", polyline.bulges)}))
        return fault;
    return checkVertexIds(polyline.ids);
}

MaybeFault check(const TextShape& text) {
    if (!isUtf8(text.text))
        return Fault{"text", "bytes that are not UTF-8", "a text in UTF-8"};
    return first(
        {finite("position", text.position), finite("rotation", text.rotation), positive("height", text.height)});
}

}  // namespace

std::optional<Fault> faultIn(const Shape& shape) {
    return std::visit([](const auto& kind) { return check(kind); }, shape);
}

}  // namespace holdfast::document
