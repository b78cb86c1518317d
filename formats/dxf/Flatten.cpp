#include "formats/dxf/Flatten.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

#include "geometry/Angles.h"
#include "geometry/Conics.h"
#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

using Piece = std::vector<WeightedPoint>;

constexpr double kMostPieces = 65536;

Vec2 planar(const WeightedPoint& p) {
    return {p.x / p.w, p.y / p.w};
}

WeightedPoint middle(const WeightedPoint& a, const WeightedPoint& b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2, (a.w + b.w) / 2};
}

double distanceToChord(Vec2 point, Vec2 from, Vec2 to) {
    const double dx = to.x - from.x, dy = to.y - from.y;
    const double square = dx * dx + dy * dy;
    const double along = ((point.x - from.x) * dx + (point.y - from.y) * dy);
    const double t = square > 0.0 ? std::clamp(along / square, 0.0, 1.0) : 0.0;
    return std::hypot(point.x - from.x - t * dx, point.y - from.y - t * dy);
}

bool isFlat(const Piece& piece, double tolerance) {
    const Vec2 from = planar(piece.front()), to = planar(piece.back());
    return std::all_of(piece.begin(), piece.end(), [&](const WeightedPoint& point) {
        return distanceToChord(planar(point), from, to) <= tolerance;
    });
}

/// Both halves of a Bezier piece (de Casteljau's algorithm).
std::pair<Piece, Piece> halves(Piece piece) {
    Piece left, right;
    const std::size_t count = piece.size();
    for (std::size_t round = 0; round < count; ++round) {
        left.push_back(piece.front());
        right.push_back(piece[count - 1 - round]);
        for (std::size_t i = 0; i + 1 < count - round; ++i)
            piece[i] = middle(piece[i], piece[i + 1]);
    }
    std::reverse(right.begin(), right.end());
    return {std::move(left), std::move(right)};
}

void appendPiece(std::vector<Vec2>& points, const Piece& piece, double tolerance, int depth) {
    if (depth == 0 || isFlat(piece, tolerance)) {
        points.push_back(planar(piece.back()));
        return;
    }
    const auto [left, right] = halves(piece);
    appendPiece(points, left, tolerance, depth - 1);
    appendPiece(points, right, tolerance, depth - 1);
}

}  // namespace

std::vector<Vec2> flattened(const EllipticalArcShape& arc, double tolerance) {
    const double sweep = arc.endParam - arc.startParam;
    const double step = std::sqrt(8.0 * tolerance / std::hypot(arc.majorAxis.x, arc.majorAxis.y));
    const double fewest = std::ceil(sweep / (kTurn / 8));
    const double count = std::clamp(std::ceil(sweep / step), fewest, kMostPieces);
    std::vector<Vec2> points;
    for (int i = 0; i <= static_cast<int>(count); ++i) {
        const double param = arc.startParam + sweep * (i / count);
        points.push_back(ellipsePoint(arc.centre, arc.majorAxis, arc.ratio, param));
    }
    return points;
}

std::vector<Vec2> flattened(const EllipseShape& ellipse, double tolerance) {
    std::vector<Vec2> points =
        flattened(EllipticalArcShape{ellipse.centre, ellipse.majorAxis, ellipse.ratio, 0.0, kTurn}, tolerance);
    points.back() = points.front();
    return points;
}

std::vector<Vec2> flattened(const SplineShape& spline, double tolerance) {
    constexpr int deepest = 16;  // 2 to the 16 is kMostPieces
    std::vector<Vec2> points{splineStart(spline)};
    for (const Piece& piece : bezierPieces(spline))
        appendPiece(points, piece, tolerance, deepest);
    return points;
}

}  // namespace holdfast::formats
