#include "geometry/curves/Parameters.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Polylines.h"
#include "geometry/curves/Soundness.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

const SplineShape* asSpline(const Shape& shape) {
    return std::get_if<SplineShape>(&shape);
}
const PolylineShape* asPolyline(const Shape& shape) {
    return std::get_if<PolylineShape>(&shape);
}

ParamRange rangeOf(const SplineShape& spline) {
    if (spline.periodic) {
        return {spline.knots.front(), spline.knots.back()};
    }
    return {spline.knots[static_cast<std::size_t>(spline.degree)], spline.knots[spline.control.size()]};
}

/// A parameter brought into one round of a closed curve.
double wrapped(double param, double first, double period) {
    const double inside = param - std::floor((param - first) / period) * period;
    return inside < first + period ? inside : first;
}

double keptOn(const SplineShape& spline, double param) {
    const ParamRange range = rangeOf(spline);
    return spline.periodic ? wrapped(param, range.first, range.last - range.first)
                           : std::clamp(param, range.first, range.last);
}

double keptOn(const PolylineShape& polyline, double param) {
    return polyline.closed ? wrapped(param, 0.0, static_cast<double>(segmentCount(polyline))) : param;
}

Derivatives derivativesAt(const Shape& shape, double param) {
    requireSound(shape);
    requireFinite(param);
    if (const SplineShape* spline = asSpline(shape)) {
        const double t = keptOn(*spline, param);
        return splineDerivatives(*spline, std::span(&t, 1)).front();
    }
    const PolylineShape* polyline = asPolyline(shape);
    const double t = polyline != nullptr ? keptOn(*polyline, param) : param;
    const Piece piece = pieceAt(shape, t);
    return derivatives(piece.form, piece.localAt(t));
}

/// Vertices are given as they stand, to the last bit, and a segment without length is its vertex.
Vec2 pointOn(const PolylineShape& polyline, double param) {
    const double t = keptOn(polyline, param);
    const double last = static_cast<double>(segmentCount(polyline) - 1);
    const std::size_t index = static_cast<std::size_t>(std::clamp(std::floor(t), 0.0, last));
    const Vec2 from = polyline.vertices[index];
    const Vec2 to = polyline.vertices[(index + 1) % polyline.vertices.size()];
    const double fraction = t - static_cast<double>(index);
    if (fraction == 0.0 || from == to) {
        return from;
    }
    if (fraction == 1.0) {
        return to;
    }
    const Piece piece = segmentPiece(polyline, index);
    return derivatives(piece.form, piece.localAt(t)).point;
}

std::vector<Vec2> pointsOn(const SplineShape& spline, std::span<const double> params) {
    std::vector<double> inside;
    std::transform(params.begin(), params.end(), std::back_inserter(inside),
                   [&](double t) { return keptOn(spline, t); });
    std::vector<Vec2> points;
    for (const Derivatives& at : splineDerivatives(spline, inside)) {
        points.push_back(at.point);
    }
    return points;
}

}  // namespace

ParamRange paramRange(const Shape& shape) {
    requireSound(shape);
    if (const SplineShape* spline = asSpline(shape)) {
        return rangeOf(*spline);
    }
    if (const PolylineShape* polyline = asPolyline(shape)) {
        return {0.0, static_cast<double>(segmentCount(*polyline))};
    }
    const Piece piece = pieceAt(shape, 0.0);
    return {piece.first, piece.last};
}

double periodOf(const Shape& shape) {
    if (std::holds_alternative<CircleShape>(shape) || std::holds_alternative<EllipseShape>(shape)) {
        return kTurn;
    }
    const SplineShape* spline = asSpline(shape);
    const PolylineShape* polyline = asPolyline(shape);
    const bool isRound = (spline != nullptr && spline->periodic) || (polyline != nullptr && polyline->closed);
    if (!isRound) {
        return 0.0;
    }
    const ParamRange range = paramRange(shape);
    return range.last - range.first;
}

bool isClosed(const Shape& shape) {
    if (periodOf(shape) > 0.0) {
        return true;
    }
    const auto start = startPoint(shape);
    const auto end = endPoint(shape);
    return start && end && distance(*start, *end) <= kSamePoint * boundsOf(shape).diagonal();
}

double normalised(const Shape& shape, double param) {
    requireFinite(param);
    const double period = periodOf(shape);
    return period > 0.0 ? wrapped(param, paramRange(shape).first, period) : param;
}

Vec2 pointAt(const Shape& shape, double param) {
    return pointsAt(shape, std::span(&param, 1)).front();
}

std::vector<Vec2> pointsAt(const Shape& shape, std::span<const double> params) {
    requireSound(shape);
    std::for_each(params.begin(), params.end(), requireFinite);
    if (const SplineShape* spline = asSpline(shape)) {
        return pointsOn(*spline, params);
    }
    std::vector<Vec2> points;
    points.reserve(params.size());
    for (const double t : params) {
        const PolylineShape* polyline = asPolyline(shape);
        points.push_back(polyline != nullptr ? pointOn(*polyline, t) : derivatives(pieceAt(shape, t).form, t).point);
    }
    return points;
}

Vec2 tangentAt(const Shape& shape, double param) {
    const Vec2 along = derivativesAt(shape, param).first;
    if (!(norm(along) > 0.0)) {
        throw GeometryError(std::string(kindName(shape)) + ": has no direction at parameter " + std::to_string(param));
    }
    return unit(along);
}

double curvatureAt(const Shape& shape, double param) {
    const Derivatives at = derivativesAt(shape, param);
    const double speed = norm(at.first);
    if (!(speed > 0.0)) {
        throw GeometryError(std::string(kindName(shape)) + ": has no curvature at parameter " + std::to_string(param));
    }
    return cross(at.first, at.second) / (speed * speed * speed);
}

std::optional<Vec2> startPoint(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape)) {
        return line->start;
    }
    const double first = paramRange(shape).first;
    return std::isfinite(first) ? std::optional(pointAt(shape, first)) : std::nullopt;
}

std::optional<Vec2> endPoint(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape)) {
        return line->end;
    }
    const double last = paramRange(shape).last;
    return std::isfinite(last) ? std::optional(pointAt(shape, last)) : std::nullopt;
}

Box boundsOf(const Shape& shape) {
    return boundsOf(piecesOf(shape));
}

}  // namespace holdfast::geometry
