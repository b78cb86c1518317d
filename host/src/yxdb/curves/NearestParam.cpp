#include "host/src/yxdb/curves/NearestParam.h"

#include <algorithm>
#include <cmath>

namespace holdfast {
namespace {

/// The curve as seen from the target, and in `error` how far rounding may have moved it.
BezierPoints seenFrom(const YxGePoint3d& target, const BezierPoints& control, double& error) {
    BezierPoints seen;
    seen.reserve(control.size());
    double scale = 0.0;
    for (const HomogeneousPoint& p : control) {
        seen.push_back({p.x - target.x * p.w, p.y - target.y * p.w, p.z - target.z * p.w, p.w});
        scale = std::max({scale, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
        scale = std::max({scale, std::abs(target.x) * p.w, std::abs(target.y) * p.w, std::abs(target.z) * p.w});
    }
    constexpr double kRoundings = 16.0;  // of the control points themselves, and of all halvings
    error = kRoundings * kEpsilon * scale;
    return seen;
}

}  // namespace

void NearestParam::offer(double param, const YxGePoint3d& point) {
    const double distance = point.distanceTo(m_target);
    if (distance >= m_distance)
        return;
    m_distance = distance;
    m_param = param;
}

void NearestParam::search(const Piece& piece) {
    double error = 0.0;
    const BezierPoints seen = seenFrom(m_target, piece.control, error);
    for (const double end : {0.0, 1.0})
        offer(piece.paramAt(end), piece.sampleAt(piece.paramAt(end)).point);
    searchPart(piece, seen, 0.0, 1.0, error, 0);
}

/// Halves the part until the distance has one lowest place on it, or none, or cannot be the smallest.
void NearestParam::searchPart(const Piece& piece, const BezierPoints& part, double from, double to, double error,
                              int depth) {
    constexpr int kDeepest = 48;
    const DistanceBounds bounds = distanceBounds(part, error);
    if (bounds.lowestSquared >= m_distance * m_distance || bounds.turns == 0)
        return;
    if (bounds.turns == 1 || depth == kDeepest) {
        const double param = bounds.fallsFirst ? refined(piece, from, to) : piece.paramAt(from);
        offer(param, piece.sampleAt(param).point);
        return;
    }
    const double middle = from + (to - from) / 2.0;
    const double param = piece.paramAt(middle);
    offer(param, piece.sampleAt(param).point);
    const auto [left, right] = halves(part);
    searchPart(piece, left, from, middle, error, depth + 1);
    searchPart(piece, right, middle, to, error, depth + 1);
}

/// The zero of (C - P) . C' on a part on which the distance falls, then rises. Steps of Gauss and Newton, which
/// converge quadratically for points on the curve; bisection where they stall.
double NearestParam::refined(const Piece& piece, double from, double to) const {
    constexpr int kMostSteps = 200;
    double low = piece.paramAt(from);
    double high = piece.paramAt(to);
    const double width = high - low;
    double lastStep = width;
    double param = low + width / 2.0;
    for (int i = 0; i < kMostSteps; ++i) {
        const CurveSample at = piece.sampleAt(param);
        const double rising = slope(at);
        if (rising == 0.0)
            return param;
        (rising > 0.0 ? high : low) = param;
        double next = param - rising / at.derivative.dotProduct(at.derivative);
        if (!(next > low && next < high) || std::abs(next - param) > lastStep / 2.0)
            next = low + (high - low) / 2.0;
        lastStep = std::abs(next - param);
        param = next;
        if (lastStep <= kEpsilon * std::abs(param) || high - low <= kEpsilon * width)
            break;
    }
    return param;
}

}  // namespace holdfast
