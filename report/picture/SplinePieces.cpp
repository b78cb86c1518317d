#include "report/picture/SplinePieces.h"

#include <algorithm>
#include <cstddef>

#include "geometry/SplineCurve.h"
#include "report/picture/Plane2.h"

namespace holdfast::report {

namespace {

using Piece = std::vector<WeightedPoint>;

/// A picture may be asked for while a drawing is still being looked at for faults.
bool isSound(const SplineShape& spline) {
    const std::size_t controls = spline.control.size(), knots = spline.knots.size();
    if (spline.degree < 1 || controls == 0 || !std::is_sorted(spline.knots.begin(), spline.knots.end()))
        return false;
    if (!spline.weights.empty() && spline.weights.size() != controls)
        return false;
    const auto order = static_cast<std::size_t>(spline.degree) + 1;
    if (spline.periodic)
        return knots > controls && knots - controls <= order && spline.knots.front() < spline.knots.back();
    return controls >= order && knots == controls + order && spline.knots[order - 1] < spline.knots[controls];
}

Vec2 projected(const WeightedPoint& point) {
    return point.w != 0.0 ? Vec2{point.x / point.w, point.y / point.w} : Vec2{point.x, point.y};
}

/// De Casteljau's algorithm.
Vec2 onPiece(Piece points, double t) {
    for (std::size_t left = points.size() - 1; left > 0; --left)
        for (std::size_t i = 0; i < left; ++i) {
            const WeightedPoint &a = points[i], &b = points[i + 1];
            points[i] = {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.w + (b.w - a.w) * t};
        }
    return projected(points.front());
}

constexpr int kDeepest = 12;    // 4096 chords in one piece: beyond what a picture can show
constexpr int kShallowest = 2;  // an S-shaped piece may cross its chord in the middle

class ChordWalk {
public:
    ChordWalk(const Piece& piece, double tolerance, std::vector<Vec2>& out)
        : m_piece(piece), m_tolerance(tolerance), m_out(out) {}

    void walk() {
        const Vec2 start = projected(m_piece.front()), end = projected(m_piece.back());
        if (m_out.empty())
            m_out.push_back(start);
        append(0.0, start, 1.0, end, 0);
    }

private:
    /// Appends points after `from` up to and including `to`, halving the range until the chord fits.
    void append(double from, Vec2 start, double to, Vec2 end, int depth) {
        const double middle = (from + to) / 2;
        const Vec2 point = onPiece(m_piece, middle);
        const bool flat = distance(point, midway(start, end)) <= m_tolerance;
        if (depth >= kDeepest || (flat && depth >= kShallowest)) {
            m_out.push_back(end);
            return;
        }
        append(from, start, middle, point, depth + 1);
        append(middle, point, to, end, depth + 1);
    }

    const Piece& m_piece;
    double m_tolerance;
    std::vector<Vec2>& m_out;
};

}  // namespace

std::vector<CubicPiece> cubicPieces(const SplineShape& spline) {
    std::vector<CubicPiece> pieces;
    if (!isSound(spline) || !spline.weights.empty() || spline.degree > 3)
        return pieces;
    for (const Piece& each : bezierPieces(spline)) {
        CubicPiece piece{.degree = spline.degree, .control = {}};
        std::transform(each.begin(), each.end(), piece.control.begin(), projected);
        pieces.push_back(piece);
    }
    return pieces;
}

std::vector<Vec2> splinePoints(const SplineShape& spline, double tolerance) {
    if (!isSound(spline))
        return spline.control;
    std::vector<Vec2> points;
    for (const Piece& piece : bezierPieces(spline))
        ChordWalk(piece, tolerance, points).walk();
    return points;
}

Vec2 splinePointAt(const SplineShape& spline, double share) {
    if (!isSound(spline))
        return spline.control.empty() ? Vec2{} : spline.control[spline.control.size() / 2];
    const auto degree = static_cast<std::size_t>(spline.degree);
    const double from = spline.periodic ? spline.knots.front() : spline.knots[degree];
    const double to = spline.periodic ? spline.knots.back() : spline.knots[spline.control.size()];
    return splinePoint(spline, from + (to - from) * std::clamp(share, 0.0, 1.0));
}

}  // namespace holdfast::report
