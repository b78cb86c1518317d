#include "formats/dxf/DxfFitSpline.h"

#include <cstddef>

namespace holdfast::formats {
namespace {

/// The first derivatives at the points, of which each follows from those beside it: a system in which the diagonal
/// outweighs the rest by two, so that every round at least halves what is missing.
class Slopes {
public:
    Slopes(const FitPoints& fit, const std::vector<double>& steps)
        : m_fit(fit), m_steps(steps), m_slopes(fit.points.size(), Vec2{0.0, 0.0}) {}

    std::vector<Vec2> settle() {
        constexpr int rounds = 60;  // 2 to the -60 is below the rounding of a double
        for (int round = 0; round < rounds; ++round)
            for (std::size_t i = 0; i < m_slopes.size(); ++i)
                m_slopes[i] = slopeAt(i);
        return m_slopes;
    }

private:
    Vec2 chord(std::size_t i) const { return 1.0 / m_steps[i] * (m_fit.points[i + 1] - m_fit.points[i]); }

    Vec2 slopeAt(std::size_t i) const {
        const std::size_t last = m_slopes.size() - 1;
        if (m_fit.isClosed && (i == 0 || i == last))
            return i == last ? m_slopes[0] : inner(last - 1, 0, m_slopes[last - 1], m_slopes[1]);
        // By the length of the chords a curve runs with about the speed 1.
        if (i == 0)
            return m_fit.startTangent ? unit(*m_fit.startTangent) : 0.5 * (3.0 * chord(0) - m_slopes[1]);
        if (i == last)
            return m_fit.endTangent ? unit(*m_fit.endTangent) : 0.5 * (3.0 * chord(last - 1) - m_slopes[last - 1]);
        return inner(i - 1, i, m_slopes[i - 1], m_slopes[i + 1]);
    }

    /// Between two steps: the second derivatives on both sides are the same.
    Vec2 inner(std::size_t before, std::size_t after, Vec2 slopeBefore, Vec2 slopeAfter) const {
        const double h = m_steps[before], k = m_steps[after];
        const Vec2 pull = 3.0 * (k * chord(before) + h * chord(after)) - k * slopeBefore - h * slopeAfter;
        return 1.0 / (2.0 * (h + k)) * pull;
    }

    const FitPoints& m_fit;
    const std::vector<double>& m_steps;
    std::vector<Vec2> m_slopes;
};

}  // namespace

SplineShape splineThrough(FitPoints fit) {
    if (fit.isClosed && fit.points.front() != fit.points.back())
        fit.points.push_back(fit.points.front());
    const std::size_t pieces = fit.points.size() - 1;
    std::vector<double> steps, ends{0.0};
    for (std::size_t i = 0; i < pieces; ++i) {
        steps.push_back(distance(fit.points[i], fit.points[i + 1]));
        ends.push_back(ends.back() + steps.back());
    }
    const std::vector<Vec2> slopes = Slopes(fit, steps).settle();
    SplineShape spline;
    spline.knots.assign(3, 0.0);
    spline.knots.insert(spline.knots.end(), ends.begin(), ends.end());
    spline.knots.insert(spline.knots.end(), 3, ends.back());
    spline.control.push_back(fit.points.front());
    spline.control.push_back(fit.points.front() + steps.front() / 3.0 * slopes.front());
    // The control point over three knots is the blossom of the piece between the last two of them.
    for (std::size_t i = 1; i < pieces; ++i) {
        const Vec2 near = fit.points[i] + steps[i] / 3.0 * slopes[i];
        const Vec2 far = fit.points[i + 1] - steps[i] / 3.0 * slopes[i + 1];
        spline.control.push_back(near - steps[i - 1] / steps[i] * (far - near));
    }
    spline.control.push_back(fit.points.back() - steps.back() / 3.0 * slopes.back());
    spline.control.push_back(fit.points.back());
    return spline;
}

}  // namespace holdfast::formats
