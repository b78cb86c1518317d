#include "geometry/construction/Splitting.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"
#include "geometry/curves/Soundness.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// What is shorter than this range of knots is nothing: the geometry library takes those for one that differ by less
/// than 1e-9.
constexpr double kLeastKnotRange = 1e-8;

/// A parameter range cut out of a shape, already checked: first < last, within the curve or over its seam.
struct Range {
    double first, last;
};

/// The difference up to which two parameters are one, and not less than what rounding makes of them.
double slackOf(const Shape& shape) {
    const ParamRange range = paramRange(shape);
    const double width = range.last - range.first;
    const bool isUnit = !std::isfinite(width) || std::holds_alternative<PolylineShape>(shape);
    const double rounding = std::isfinite(width) ? 1e-15 * std::max(std::abs(range.first), std::abs(range.last)) : 0.0;
    const double least = std::holds_alternative<SplineShape>(shape) ? kLeastKnotRange : 0.0;
    return std::max({kSamePoint * (isUnit ? 1.0 : width), rounding, least});
}

[[noreturn]] void refuseRange(const Shape& shape, double first, double last, const char* why) {
    throw GeometryError(std::string(kindName(shape)) + ": no part from parameter " + std::to_string(first) + " to " +
                        std::to_string(last) + "; " + why);
}

/// Moves a parameter that is the curve's end but for rounding to that end.
double snapped(double param, const ParamRange& range, double slack) {
    if (std::abs(param - range.first) <= slack) {
        return range.first;
    }
    return std::abs(param - range.last) <= slack ? range.last : param;
}

Range openRange(const Shape& shape, double first, double last) {
    const ParamRange range = paramRange(shape);
    const double slack = slackOf(shape);
    const Range part{snapped(first, range, slack), snapped(last, range, slack)};
    if (!(part.first >= range.first && part.last <= range.last)) {
        refuseRange(shape, first, last, "that reaches beyond the curve");
    }
    if (!(part.first < part.last)) {
        refuseRange(shape, first, last, "the second must be greater");
    }
    return part;
}

/// From the seam up to less than one round further; the end is more than the start by up to one round.
Range closedRange(const Shape& shape, double first, double last) {
    if (!std::isfinite(first) || !std::isfinite(last)) {
        refuseRange(shape, first, last, "both must be finite");
    }
    const double period = periodOf(shape);
    const ParamRange range = paramRange(shape);
    const double slack = slackOf(shape);
    double start = normalised(shape, first);
    start = std::abs(start - range.last) <= slack ? range.first : start;
    const double width = last - first - period * std::floor((last - first) / period);
    const bool isWhole = width <= slack || period - width <= slack;
    return {start, isWhole ? start + period : snapped(start + width, range, slack)};
}

LineShape lineBetween(const Shape& shape, Range range) {
    return {pointAt(shape, range.first), pointAt(shape, range.last)};
}

Shape part(const LineShape& line, const ParamRange& whole, Range range) {
    return LineShape{range.first == whole.first ? line.start : pointAt(line, range.first),
                     range.last == whole.last ? line.end : pointAt(line, range.last)};
}

Shape part(const RayShape& ray, const ParamRange&, Range range) {
    const Vec2 start = range.first == 0.0 ? ray.point : pointAt(ray, range.first);
    if (range.last == kInfinity) {
        return RayShape{start, ray.direction};
    }
    return LineShape{start, pointAt(ray, range.last)};
}

Shape part(const XlineShape& line, const ParamRange&, Range range) {
    if (std::isfinite(range.first) && std::isfinite(range.last)) {
        return lineBetween(line, range);
    }
    if (std::isfinite(range.first)) {
        return RayShape{pointAt(line, range.first), line.direction};
    }
    if (std::isfinite(range.last)) {
        return RayShape{pointAt(line, range.last), {-line.direction.x, -line.direction.y}};
    }
    return line;
}

Shape part(ArcShape arc, const ParamRange&, Range range) {
    arc.startAngle = range.first;
    arc.endAngle = range.last;
    return arc;
}

Shape part(EllipticalArcShape arc, const ParamRange&, Range range) {
    arc.startParam = range.first;
    arc.endParam = range.last;
    return arc;
}

Shape part(const CircleShape& circle, const ParamRange&, Range range) {
    return ArcShape{circle.centre, circle.radius, range.first, range.last};
}

Shape part(const EllipseShape& ellipse, const ParamRange&, Range range) {
    return EllipticalArcShape{ellipse.centre, ellipse.majorAxis, ellipse.ratio, range.first, range.last};
}

Shape part(const SplineShape& spline, const ParamRange& whole, Range range) {
    const bool isAll = range.first == whole.first && range.last == whole.last && !spline.periodic;
    if (!isAll && range.last - range.first <= kLeastKnotRange) {
        throw GeometryError("spline: nothing would be left of it");
    }
    return isAll ? spline : splinePart(spline, range.first, range.last);
}

Shape part(const PolylineShape& polyline, const ParamRange&, Range range) {
    return polylinePart(polyline, range.first, range.last);
}

[[noreturn]] Shape part(const PointShape& point, const ParamRange&, Range) {
    throw GeometryError(std::string(kindName(point)) + ": is not a curve");
}

[[noreturn]] Shape part(const TextShape& text, const ParamRange&, Range) {
    throw GeometryError(std::string(kindName(text)) + ": is not a curve");
}

Shape part(const Shape& shape, const ParamRange& whole, Range range) {
    return std::visit([&](const auto& curve) { return part(curve, whole, range); }, shape);
}

/// The given parameters in order, each once, without the ends of an open curve.
std::vector<double> cutsOf(const Shape& shape, std::span<const double> params) {
    const double slack = slackOf(shape);
    const ParamRange range = paramRange(shape);
    const bool isRound = periodOf(shape) > 0.0;
    std::vector<double> cuts;
    for (const double param : params) {
        const double cut = snapped(normalised(shape, param), range, slack);
        if (!(cut >= range.first && cut <= range.last)) {
            refuseRange(shape, param, param, "that lies beyond the curve");
        }
        if (isRound) {
            cuts.push_back(cut == range.last ? range.first : cut);
        } else if (cut != range.first && cut != range.last) {
            cuts.push_back(cut);
        }
    }
    std::sort(cuts.begin(), cuts.end());
    cuts.erase(std::unique(cuts.begin(), cuts.end(), [slack](double one, double next) { return next - one <= slack; }),
               cuts.end());
    return cuts;
}

}  // namespace

Shape partOf(const Shape& shape, double firstParam, double lastParam) {
    requireSound(shape);
    return part(
        shape, paramRange(shape),
        periodOf(shape) > 0.0 ? closedRange(shape, firstParam, lastParam) : openRange(shape, firstParam, lastParam));
}

Remainder split(const Shape& shape, double firstParam, double lastParam) {
    requireSound(shape);
    const ParamRange range = paramRange(shape);
    if (periodOf(shape) > 0.0) {
        return {std::nullopt, part(shape, range, closedRange(shape, lastParam, firstParam))};
    }
    const double slack = slackOf(shape);
    if (!(firstParam <= lastParam && firstParam >= range.first - slack && lastParam <= range.last + slack)) {
        refuseRange(shape, firstParam, lastParam, "it cannot be cut out");
    }
    Remainder remainder;
    if (firstParam - range.first > slack) {
        remainder.before = part(shape, range, {range.first, snapped(firstParam, range, slack)});
    }
    if (range.last - lastParam > slack) {
        remainder.after = part(shape, range, {snapped(lastParam, range, slack), range.last});
    }
    return remainder;
}

std::vector<Shape> splitAt(const Shape& shape, std::span<const double> params) {
    requireSound(shape);
    const std::vector<double> cuts = cutsOf(shape, params);
    if (cuts.empty()) {
        return {shape};
    }
    const ParamRange range = paramRange(shape);
    const double period = periodOf(shape);
    std::vector<Shape> parts;
    if (period == 0.0) {
        parts.push_back(part(shape, range, {range.first, cuts.front()}));
    }
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
        parts.push_back(part(shape, range, {cuts[i], cuts[i + 1]}));
    }
    parts.push_back(part(shape, range, {cuts.back(), period > 0.0 ? cuts.front() + period : range.last}));
    return parts;
}

Shape reversed(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape)) {
        return LineShape{line->end, line->start};
    }
    if (const auto* line = std::get_if<XlineShape>(&shape)) {
        return XlineShape{line->point, {-line->direction.x, -line->direction.y}};
    }
    if (const auto* spline = std::get_if<SplineShape>(&shape)) {
        return splineReversed(*spline);
    }
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    return polyline != nullptr ? Shape(reversedPolyline(*polyline)) : shape;
}

}  // namespace holdfast::geometry
