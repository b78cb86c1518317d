#pragma once

#include <span>

#include "host/src/yxdb/curves/BernsteinSlope.h"
#include "host/src/yxdb/curves/CurveMath.h"

namespace holdfast {

/// Evaluates a B-spline without copying it. All data must be sound (see SplineData).
///
/// A periodic spline lists the knots of one period; with m the multiplicity of the first one, degree + 1 - m knots are
/// repeated on either side, and as many control points wrap from the back to the front. Control point 0 belongs to the
/// basis function that starts at the first repeated knot.
class SplineView {
public:
    static constexpr int kHighestDegree = 25;

    SplineView(int degree, bool periodic, std::span<const YxGePoint3d> control, std::span<const double> knots,
               std::span<const double> weights);

    double firstParam() const { return knot(m_degree); }
    double lastParam() const { return knot(m_count); }
    /// The number of the knot interval of some length that holds a parameter of the range; the end of the curve belongs
    /// to the last one. Binary search.
    int intervalAt(double param) const;
    /// The first and one past the last interval, empty ones among them.
    int firstInterval() const { return m_degree; }
    int endInterval() const { return m_count; }
    double knot(int index) const;

    /// Point and derivative by de Boor's algorithm (C. de Boor, On calculating with B-splines, 1972).
    CurveSample sampleAt(double param, int interval) const;
    CurveSample sampleAt(double param) const { return sampleAt(param, intervalAt(param)); }

    double nearestParam(const YxGePoint3d& point) const;

private:
    HomogeneousPoint controlAt(int index) const;
    /// The piece over one knot interval as a Bezier curve.
    BezierPoints bezierOver(int interval) const;
    /// No point over the interval is nearer than this: the distance from the box around its control points.
    double leastDistance(int interval, const YxGePoint3d& point) const;

    int m_degree;
    std::span<const YxGePoint3d> m_control;
    std::span<const double> m_knots;
    std::span<const double> m_weights;
    int m_repeated;  // knots repeated on either side, and control points that wrap
    int m_count;     // control points, the wrapped ones counted again
};

}  // namespace holdfast
