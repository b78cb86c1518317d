#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "host/src/yxdb/CurveMath.h"

namespace holdfast {

/// Finds the parameter at which a curve comes nearest to a point, piece by piece: each piece is sampled, and the
/// smallest distances are refined where (C - P) . C' changes its sign. Of equally near points it keeps
/// the one that it met first.
class NearestParam {
public:
    explicit NearestParam(const YxGePoint3d& target) : m_target(target) {}

    /// Looks at one piece: curve(param) gives a CurveSample and is smooth from `from` to `to`. Costs as many calls as
    /// there are steps, and a few dozen more when the piece may hold the nearest point.
    template <class Curve>
    void search(const Curve& curve, double from, double to, int steps) {
        std::vector<Sample> samples;
        samples.reserve(static_cast<std::size_t>(steps) + 1);
        for (int i = 0; i <= steps; ++i)
            samples.push_back(sample(curve, i == steps ? to : from + (to - from) * i / steps));
        for (const Sample& each : samples)
            offer(each);
        for (std::size_t i = 0; i + 1 < samples.size(); ++i)
            if (mayHoldNearest(samples, i))
                offer(sample(curve, refine(curve, samples[i], samples[i + 1])));
    }

    double param() const { return m_best.param; }
    double distance() const { return m_best.distance; }

private:
    struct Sample {
        double param = 0.0;
        YxGePoint3d point;
        YxGeVector3d derivative;
        double distance = std::numeric_limits<double>::infinity();
    };

    template <class Curve>
    Sample sample(const Curve& curve, double param) const {
        const CurveSample at = curve(param);
        return {param, at.point, at.derivative, at.point.distanceTo(m_target)};
    }

    void offer(const Sample& candidate) {
        if (candidate.distance < m_best.distance)
            m_best = candidate;
    }

    /// One end of the interval is no farther away than its neighbours, and near enough to beat the best sample.
    bool mayHoldNearest(std::span<const Sample> samples, std::size_t i) const {
        const Sample& left = samples[i];
        const Sample& right = samples[i + 1];
        const double reach = 2.0 * left.point.distanceTo(right.point);
        if (std::min(left.distance, right.distance) - reach > m_best.distance)
            return false;
        const bool leftIsLowest = i == 0 || samples[i - 1].distance >= left.distance;
        const bool rightIsLowest = i + 2 == samples.size() || samples[i + 2].distance >= right.distance;
        return left.distance <= right.distance ? leftIsLowest : rightIsLowest;
    }

    double slope(const Sample& at) const { return (at.point - m_target).dotProduct(at.derivative); }

    /// The zero of (C - P) . C' between two samples, or the end towards which the distance falls. Steps of
    /// Gauss and Newton, which converge quadratically for points on the curve; bisection where they stall.
    template <class Curve>
    double refine(const Curve& curve, const Sample& left, const Sample& right) const {
        constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
        constexpr int kMostSteps = 200;
        // At a cusp or a double control point the derivative vanishes and the slope is noise.
        const double noise = 16.0 * kEpsilon * std::max(left.distance, right.distance) *
                             std::max(left.derivative.length(), right.derivative.length());
        if (slope(left) > noise)
            return left.param;
        if (slope(right) < -noise)
            return right.param;
        double low = left.param;
        double high = right.param;
        double param = low + (high - low) / 2.0;
        double lastStep = high - low;
        for (int i = 0; i < kMostSteps; ++i) {
            const Sample at = sample(curve, param);
            const double rising = slope(at);
            (rising > 0.0 ? high : low) = param;
            double next = param - rising / at.derivative.dotProduct(at.derivative);
            if (!(next > low && next < high) || std::abs(next - param) > lastStep / 2.0)
                next = low + (high - low) / 2.0;
            lastStep = std::abs(next - param);
            param = next;
            if (lastStep <= kEpsilon * (std::abs(param) + (right.param - left.param)))
                break;
        }
        return param;
    }

    YxGePoint3d m_target;
    Sample m_best;
};

}  // namespace holdfast
