#include "geometry/SplineCurve.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>

namespace holdfast::geometry {
namespace {

/// An open spline with homogeneous control points.
struct FlatSpline {
    std::size_t degree;
    std::vector<WeightedPoint> control;
    std::vector<double> knots;
};

FlatSpline flat(const SplineShape& spline) {
    const SplineShape open = unwrapped(spline);
    FlatSpline result{static_cast<std::size_t>(open.degree), {}, open.knots};
    result.control.reserve(open.control.size());
    for (std::size_t i = 0; i < open.control.size(); ++i) {
        const double w = open.weights.empty() ? 1.0 : open.weights[i];
        result.control.push_back({open.control[i].x * w, open.control[i].y * w, w});
    }
    return result;
}

WeightedPoint mix(const WeightedPoint& a, const WeightedPoint& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.w + (b.w - a.w) * t};
}

/// The polar form of the piece over [knots[span], knots[span + 1]] at as many arguments as the degree.
WeightedPoint blossom(const FlatSpline& spline, std::size_t span, std::span<const double> arguments) {
    const std::size_t degree = spline.degree;
    const auto begin = spline.control.begin() + static_cast<std::ptrdiff_t>(span - degree);
    std::vector<WeightedPoint> points(begin, begin + static_cast<std::ptrdiff_t>(degree) + 1);
    for (std::size_t round = 1; round <= degree; ++round) {
        for (std::size_t j = degree; j >= round; --j) {
            const double left = spline.knots[span - degree + j];
            const double right = spline.knots[span + 1 + j - round];
            points[j] = mix(points[j - 1], points[j], (arguments[round - 1] - left) / (right - left));
        }
    }
    return points[degree];
}

std::vector<WeightedPoint> pieceOver(const FlatSpline& spline, std::size_t span) {
    std::vector<WeightedPoint> piece;
    for (std::size_t j = 0; j <= spline.degree; ++j) {
        std::vector<double> arguments(spline.degree, spline.knots[span]);
        std::fill_n(arguments.rbegin(), j, spline.knots[span + 1]);
        piece.push_back(blossom(spline, span, arguments));
    }
    return piece;
}

}  // namespace

SplineShape unwrapped(const SplineShape& spline) {
    if (!spline.periodic)
        return spline;
    SplineShape open = spline;
    open.periodic = false;
    const std::size_t count = spline.control.size();
    const std::size_t repeats = spline.knots.size() - count;
    const std::size_t copies = static_cast<std::size_t>(spline.degree) + 1 - repeats;
    const double period = spline.knots.back() - spline.knots.front();
    open.knots.clear();
    // Knot i of the endless sequence, moved by whole periods: the first count knots of the file repeat.
    const auto endless = [&](std::size_t i, std::size_t periods, double sign) {
        return spline.knots[i % count] + sign * static_cast<double>(periods) * period;
    };
    for (std::size_t i = 0; i < copies; ++i) {
        const std::size_t shifted = i + count * copies - copies;  // a non-negative stand-in for i - copies
        open.knots.push_back(endless(shifted, (copies - i - 1) / count + 1, -1.0));
    }
    open.knots.insert(open.knots.end(), spline.knots.begin(), spline.knots.end());
    for (std::size_t i = 0; i < copies; ++i)
        open.knots.push_back(endless(repeats + i, (repeats + i) / count + 1, 1.0));
    for (std::size_t i = 0; i < copies; ++i) {
        open.control.push_back(spline.control[i % count]);
        if (!spline.weights.empty())
            open.weights.push_back(spline.weights[i % count]);
    }
    return open;
}

SplineKnots knotsOf(const SplineShape& spline) {
    return {spline.degree, spline.periodic, static_cast<int>(spline.control.size()), unwrapped(spline).knots,
            spline.weights};
}

Vec2 splinePoint(const SplineShape& spline, double param) {
    const SplineKnots knots = knotsOf(spline);
    const SplineRange range = splineRange(knots);
    return pointOf(splineBasis(knots, std::clamp(param, range.first, range.last)), spline.control);
}

Vec2 splineStart(const SplineShape& spline) {
    return splinePoint(spline, -std::numeric_limits<double>::infinity());
}

Vec2 splineEnd(const SplineShape& spline) {
    return splinePoint(spline, std::numeric_limits<double>::infinity());
}

std::vector<std::vector<WeightedPoint>> bezierPieces(const SplineShape& spline) {
    const FlatSpline curve = flat(spline);
    std::vector<std::vector<WeightedPoint>> pieces;
    for (std::size_t span = curve.degree; span < curve.control.size(); ++span) {
        if (curve.knots[span] < curve.knots[span + 1])
            pieces.push_back(pieceOver(curve, span));
    }
    return pieces;
}

}  // namespace holdfast::geometry
