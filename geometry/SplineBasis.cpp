#include "geometry/SplineBasis.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace holdfast::geometry {

namespace {

constexpr std::size_t at(int number) {
    return static_cast<std::size_t>(number);
}

using Table = std::array<std::array<double, SplineBasis::kMaxDegree + 1>, SplineBasis::kMaxDegree + 1>;

double inRange(const SplineKnots& spline, double param) {
    if (!spline.periodic)
        return param;
    const SplineRange range = splineRange(spline);
    const double period = range.last - range.first;
    return param - period * std::floor((param - range.first) / period);
}

/// The knot interval that holds the parameter; the nearest one with length for a parameter outside.
int spanOf(const SplineKnots& spline, double param) {
    const auto knots = spline.knots.begin();
    const int last = static_cast<int>(spline.knots.size()) - spline.degree - 2;
    int span = static_cast<int>(std::upper_bound(knots + spline.degree + 1, knots + last + 1, param) - knots) - 1;
    while (span > spline.degree && spline.knots[at(span)] == spline.knots[at(span + 1)])
        --span;
    while (span < last && spline.knots[at(span)] == spline.knots[at(span + 1)])
        ++span;
    return span;
}

/// Basis functions (upper triangle) and knot differences (lower triangle) of all degrees up to the spline's
/// (L. Piegl and W. Tiller, The NURBS Book, algorithm A2.3).
Table basisTable(const SplineKnots& spline, int span, double param) {
    std::array<double, SplineBasis::kMaxDegree + 1> left{}, right{};
    Table table{};
    table[0][0] = 1.0;
    for (int j = 1; j <= spline.degree; ++j) {
        left[at(j)] = param - spline.knots[at(span + 1 - j)];
        right[at(j)] = spline.knots[at(span + j)] - param;
        double saved = 0.0;
        for (int r = 0; r < j; ++r) {
            table[at(j)][at(r)] = right[at(r + 1)] + left[at(j - r)];
            const double part = table[at(r)][at(j - 1)] / table[at(j)][at(r)];
            table[at(r)][at(j)] = saved + right[at(r + 1)] * part;
            saved = left[at(j - r)] * part;
        }
        table[at(j)][at(j)] = saved;
    }
    return table;
}

/// Derivatives of basis function r, up to the third, before the factors of the degree (the same algorithm, part two).
void differentiate(const Table& table, int degree, int r, SplineBasis& basis) {
    std::array<std::array<double, SplineBasis::kMaxDegree + 1>, 2> a{};
    int now = 0;
    a[0][0] = 1.0;
    for (int k = 1; k <= std::min(SplineBasis::kDerivatives, degree); ++k) {
        const auto& old = a[at(now)];
        auto& next = a[at(1 - now)];
        const int rk = r - k, pk = degree - k;
        double sum = 0.0;
        if (r >= k) {
            next[0] = old[0] / table[at(pk + 1)][at(rk)];
            sum = next[0] * table[at(rk)][at(pk)];
        }
        const int from = rk >= -1 ? 1 : -rk;
        const int to = r - 1 <= pk ? k - 1 : degree - r;
        for (int j = from; j <= to; ++j) {
            next[at(j)] = (old[at(j)] - old[at(j - 1)]) / table[at(pk + 1)][at(rk + j)];
            sum += next[at(j)] * table[at(rk + j)][at(pk)];
        }
        if (r <= pk) {
            next[at(k)] = -old[at(k - 1)] / table[at(pk + 1)][at(r)];
            sum += next[at(k)] * table[at(r)][at(pk)];
        }
        basis.by[at(k)][at(r)] = sum;
        now = 1 - now;
    }
}

void applyDegreeFactors(int degree, SplineBasis& basis) {
    double factor = degree;
    for (int k = 1; k <= SplineBasis::kDerivatives; ++k) {
        for (int i = 0; i < basis.count; ++i)
            basis.by[at(k)][at(i)] *= factor;
        factor *= degree - k;
    }
}

/// Quotient rule for R = w N / W, written as R W = w N and differentiated k times (Leibniz).
void makeRational(const SplineKnots& spline, SplineBasis& basis) {
    std::array<double, SplineBasis::kDerivatives + 1> weight{};
    for (int k = 0; k <= SplineBasis::kDerivatives; ++k) {
        for (int i = 0; i < basis.count; ++i) {
            basis.by[at(k)][at(i)] *= spline.weights[at(basis.control(i))];
            weight[at(k)] += basis.by[at(k)][at(i)];
        }
    }
    constexpr double binomial[4][4] = {{1, 0, 0, 0}, {1, 1, 0, 0}, {1, 2, 1, 0}, {1, 3, 3, 1}};
    for (int i = 0; i < basis.count; ++i) {
        for (int k = 0; k <= SplineBasis::kDerivatives; ++k) {
            double sum = basis.by[at(k)][at(i)];
            for (int j = 1; j <= k; ++j)
                sum -= binomial[k][j] * weight[at(j)] * basis.by[at(k - j)][at(i)];
            basis.by[at(k)][at(i)] = sum / weight[0];
        }
    }
}

/// Position, first and second derivative of the curve at a parameter.
struct CurveSample {
    Vec2 p, d1, d2;
};

CurveSample sample(const SplineKnots& spline, std::span<const double> control, double param) {
    const SplineBasis basis = splineBasis(spline, param);
    CurveSample s;
    for (int i = 0; i < basis.count; ++i) {
        const double x = control[at(2 * basis.control(i))], y = control[at(2 * basis.control(i) + 1)];
        s.p = {s.p.x + basis.by[0][at(i)] * x, s.p.y + basis.by[0][at(i)] * y};
        s.d1 = {s.d1.x + basis.by[1][at(i)] * x, s.d1.y + basis.by[1][at(i)] * y};
        s.d2 = {s.d2.x + basis.by[2][at(i)] * x, s.d2.y + basis.by[2][at(i)] * y};
    }
    return s;
}

double distanceTo(const CurveSample& s, Vec2 p) {
    return std::hypot(s.p.x - p.x, s.p.y - p.y);
}

}  // namespace

SplineRange splineRange(const SplineKnots& spline) {
    assert(spline.degree >= 1 && spline.knots.size() > at(2 * spline.degree + 1));
    return {spline.knots[at(spline.degree)], spline.knots[spline.knots.size() - at(spline.degree) - 1]};
}

bool isClampedAtStart(const SplineKnots& spline) {
    return !spline.periodic && spline.knots.front() == splineRange(spline).first;
}

bool isClampedAtEnd(const SplineKnots& spline) {
    return !spline.periodic && spline.knots.back() == splineRange(spline).last;
}

SplineBasis splineBasis(const SplineKnots& spline, double param) {
    assert(spline.degree >= 1 && spline.degree <= SplineBasis::kMaxDegree);
    assert(spline.weights.empty() || spline.weights.size() == at(spline.controlCount));
    const double t = inRange(spline, param);
    const int span = spanOf(spline, t);
    const Table table = basisTable(spline, span, t);
    SplineBasis basis;
    basis.count = spline.degree + 1;
    basis.firstControl = span - spline.degree;
    basis.controlCount = spline.controlCount;
    for (int r = 0; r < basis.count; ++r) {
        basis.by[0][at(r)] = table[at(r)][at(spline.degree)];
        differentiate(table, spline.degree, r, basis);
    }
    applyDegreeFactors(spline.degree, basis);
    if (!spline.weights.empty())
        makeRational(spline, basis);
    return basis;
}

Vec2 pointOf(const SplineBasis& basis, std::span<const Vec2> control) {
    assert(control.size() == at(basis.controlCount));
    Vec2 sum;
    for (int i = 0; i < basis.count; ++i)
        sum = sum + basis.by[0][at(i)] * control[at(basis.control(i))];
    return sum;
}

double nearestSplineParam(const SplineKnots& spline, std::span<const double> control, Vec2 p) {
    assert(control.size() == at(2 * spline.controlCount));
    const SplineRange range = splineRange(spline);
    const int samples = 16 * spline.controlCount;
    double best = range.first, bestDistance = distanceTo(sample(spline, control, best), p);
    for (int i = 1; i <= samples; ++i) {
        const double t = range.first + (range.last - range.first) * i / samples;
        const double d = distanceTo(sample(spline, control, t), p);
        if (d < bestDistance) {
            best = t;
            bestDistance = d;
        }
    }
    for (int i = 0; i < 20; ++i) {
        const CurveSample s = sample(spline, control, best);
        const Vec2 gap{s.p.x - p.x, s.p.y - p.y};
        const double slope = gap.x * s.d1.x + gap.y * s.d1.y;
        const double bend = s.d1.x * s.d1.x + s.d1.y * s.d1.y + gap.x * s.d2.x + gap.y * s.d2.y;
        if (!(bend > 0.0))
            break;
        const double next = std::clamp(best - slope / bend, range.first, range.last);
        if (distanceTo(sample(spline, control, next), p) >= bestDistance)
            break;
        best = next;
        bestDistance = distanceTo(sample(spline, control, best), p);
    }
    return best;
}

}  // namespace holdfast::geometry
