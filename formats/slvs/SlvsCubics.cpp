#include "formats/slvs/SlvsCubics.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "geometry/Angles.h"
#include "geometry/Conics.h"
#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

constexpr int kMostHalvings = 10;

/// A point of a curve, and where it goes to with its parameter.
struct Course {
    Vec2 point, velocity;
};
using Curve = std::function<Course(double param)>;

Vec2 pointOn(const CubicPiece& piece, double t) {
    const double s = 1.0 - t;
    return s * s * s * piece[0] + 3.0 * s * s * t * piece[1] + 3.0 * s * t * t * piece[2] + t * t * t * piece[3];
}

/// The cubic with the curve's ends and directions there, halved until it keeps to the curve.
void addFitted(const Curve& curve, double from, double to, double tolerance, int halvings,
               std::vector<CubicPiece>& pieces) {
    const Course a = curve(from), b = curve(to);
    const double third = (to - from) / 3.0;
    const CubicPiece piece{a.point, a.point + third * a.velocity, b.point - third * b.velocity, b.point};
    const auto keepsTo = [&](double t) {
        return distance(pointOn(piece, t), curve(from + t * (to - from)).point) <= tolerance;
    };
    if (halvings == 0 || (keepsTo(0.25) && keepsTo(0.5) && keepsTo(0.75))) {
        pieces.push_back(piece);
        return;
    }
    const double middle = 0.5 * (from + to);
    addFitted(curve, from, middle, tolerance, halvings - 1, pieces);
    addFitted(curve, middle, to, tolerance, halvings - 1, pieces);
}

CubicPieces ellipsePieces(Vec2 centre, Vec2 majorAxis, double ratio, double from, double to, double tolerance) {
    const Curve curve = [&](double param) {
        return Course{ellipsePoint(centre, majorAxis, ratio, param), ellipseTangent(majorAxis, ratio, param)};
    };
    CubicPieces result;
    const int quarters = std::max(1, static_cast<int>(std::ceil((to - from) / kQuarterTurn - 1e-9)));
    const auto at = [&](int i) { return i == quarters ? to : from + i * (to - from) / quarters; };
    for (int i = 0; i < quarters; ++i)
        addFitted(curve, at(i), at(i + 1), tolerance, kMostHalvings, result.pieces);
    return result;
}

/// By the scheme of de Casteljau, in homogeneous coordinates.
Course courseOf(std::vector<WeightedPoint> points, double t) {
    const auto mean = [t](double a, double b) { return (1.0 - t) * a + t * b; };
    const auto degree = static_cast<double>(points.size() - 1);
    for (; points.size() > 2; points.pop_back())
        for (std::size_t i = 0; i + 1 < points.size(); ++i)
            points[i] = {mean(points[i].x, points[i + 1].x), mean(points[i].y, points[i + 1].y),
                         mean(points[i].w, points[i + 1].w)};
    const WeightedPoint &a = points[0], &b = points[1];
    const double w = mean(a.w, b.w);
    const Vec2 point{mean(a.x, b.x) / w, mean(a.y, b.y) / w};
    const Vec2 rise{b.x - a.x, b.y - a.y};
    return {point, (degree / w) * (rise - (b.w - a.w) * point)};
}

bool hasWeights(const std::vector<WeightedPoint>& piece) {
    return std::any_of(piece.begin(), piece.end(),
                       [&](const WeightedPoint& point) { return point.w != piece.front().w; });
}

/// A Bezier curve of a degree below 3 as one of degree 3.
CubicPiece raised(const std::vector<WeightedPoint>& piece) {
    std::vector<Vec2> points;
    points.reserve(piece.size());
    for (const WeightedPoint& point : piece)
        points.push_back({point.x / point.w, point.y / point.w});
    while (points.size() < 4) {
        const auto degree = static_cast<double>(points.size());
        std::vector<Vec2> higher{points.front()};
        for (std::size_t i = 1; i < points.size(); ++i) {
            const double share = static_cast<double>(i) / degree;
            higher.push_back(share * points[i - 1] + (1.0 - share) * points[i]);
        }
        higher.push_back(points.back());
        points = std::move(higher);
    }
    return {points[0], points[1], points[2], points[3]};
}

CubicPieces splinePieces(const SplineShape& spline, double tolerance) {
    CubicPieces result;
    result.isExact = true;
    for (const std::vector<WeightedPoint>& piece : bezierPieces(spline)) {
        if (piece.size() <= 4 && !hasWeights(piece)) {
            result.pieces.push_back(raised(piece));
            continue;
        }
        result.isExact = false;
        addFitted([&](double t) { return courseOf(piece, t); }, 0.0, 1.0, tolerance, kMostHalvings, result.pieces);
    }
    return result;
}

}  // namespace

CubicPieces cubicPiecesOf(const Shape& shape, double tolerance) {
    if (const auto* ellipse = std::get_if<EllipseShape>(&shape))
        return ellipsePieces(ellipse->centre, ellipse->majorAxis, ellipse->ratio, 0.0, kTurn, tolerance);
    if (const auto* arc = std::get_if<EllipticalArcShape>(&shape))
        return ellipsePieces(arc->centre, arc->majorAxis, arc->ratio, arc->startParam, arc->endParam, tolerance);
    if (const auto* spline = std::get_if<SplineShape>(&shape))
        return splinePieces(*spline, tolerance);
    return {};
}

}  // namespace holdfast::formats
