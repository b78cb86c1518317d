#pragma once

#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace holdfast {

/// What a sum or product of doubles may be off by, as a part of it.
inline constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

/// (x w, y w, z w, w): a point of a rational curve, here always seen from a target point.
struct HomogeneousPoint {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;
};

using BezierPoints = std::vector<HomogeneousPoint>;

/// What can be said for sure about the distance of a rational Bezier curve from the origin, by the signs of polynomials
/// in Bernstein form: they lie in the hull of their coefficients and have no more roots than these change their sign.
struct DistanceBounds {
    double lowestSquared = 0.0;  ///< the curve is nowhere nearer than the root of this
    int turns = 0;               ///< at most so often does the distance turn from falling to rising or back
    bool fallsFirst = false;     ///< with one turn: the distance falls, then rises
};

/// `error` is how far each coordinate may be off; signs within that are not counted.
DistanceBounds distanceBounds(std::span<const HomogeneousPoint> curve, double error);

/// Both halves of the curve by de Casteljau's algorithm.
std::pair<BezierPoints, BezierPoints> halves(std::span<const HomogeneousPoint> curve);

HomogeneousPoint mixed(const HomogeneousPoint& a, const HomogeneousPoint& b, double share);

}  // namespace holdfast
