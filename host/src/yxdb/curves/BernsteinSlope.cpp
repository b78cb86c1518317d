#include "host/src/yxdb/curves/BernsteinSlope.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace holdfast {
namespace {

/// A number and how far it may be off.
struct Uncertain {
    double value = 0.0;
    double error = 0.0;

    int sign() const { return value > error ? 1 : value < -error ? -1 : 0; }
};

Uncertain operator+(const Uncertain& a, const Uncertain& b) {
    const double sum = a.value + b.value;
    return {sum, a.error + b.error + kEpsilon * std::abs(sum)};
}

Uncertain operator-(const Uncertain& a, const Uncertain& b) {
    return a + Uncertain{-b.value, b.error};
}

Uncertain operator*(const Uncertain& a, const Uncertain& b) {
    const double product = a.value * b.value;
    return {product, std::abs(a.value) * b.error + std::abs(b.value) * a.error + a.error * b.error +
                         kEpsilon * std::abs(product)};
}

/// A polynomial in Bernstein form, each coefficient multiplied by its binomial coefficient: so the product of two
/// polynomials is the plain convolution, and every sign is that of the Bernstein coefficient.
using Polynomial = std::vector<Uncertain>;

std::vector<double> binomials(std::size_t degree) {
    std::vector<double> row(degree + 1, 1.0);
    for (std::size_t k = 1; k <= degree; ++k)
        row[k] = row[k - 1] * static_cast<double>(degree + 1 - k) / static_cast<double>(k);
    return row;
}

Polynomial scaledBy(const std::vector<double>& factors, Polynomial values) {
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = values[i] * Uncertain{factors[i], 0.0};
    return values;
}

void addProduct(Polynomial& sum, const Polynomial& a, const Polynomial& b, double factor = 1.0) {
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t j = 0; j < b.size(); ++j)
            sum[i + j] = sum[i + j] + Uncertain{factor, 0.0} * a[i] * b[j];
}

/// One coordinate of a curve and, up to the positive factor of the degree, its derivative.
struct Coordinate {
    Polynomial value;
    Polynomial rate;

    Coordinate(std::span<const HomogeneousPoint> curve, double HomogeneousPoint::*member, double error) {
        const std::size_t degree = curve.size() - 1;
        for (const HomogeneousPoint& point : curve)
            value.push_back({point.*member, error});
        for (std::size_t i = 0; i < degree; ++i)
            rate.push_back(value[i + 1] - value[i]);
        value = scaledBy(binomials(degree), std::move(value));
        rate = scaledBy(binomials(degree - 1), std::move(rate));
    }
};

double lowestCoefficient(const Polynomial& scaled) {
    const std::vector<double> factors = binomials(scaled.size() - 1);
    double lowest = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < scaled.size(); ++k)
        lowest = std::min(lowest, (scaled[k].value - scaled[k].error) / factors[k]);
    return std::max(lowest, 0.0);
}

void countTurns(const Polynomial& slope, DistanceBounds& bounds) {
    int last = 0;
    for (const Uncertain& each : slope) {
        const int sign = each.sign();
        if (sign == 0)
            continue;
        if (last == 0)
            bounds.fallsFirst = sign < 0;
        else if (sign != last)
            ++bounds.turns;
        last = sign;
    }
}

double highestWeight(std::span<const HomogeneousPoint> curve) {
    double highest = 0.0;
    for (const HomogeneousPoint& point : curve)
        highest = std::max(highest, point.w);
    return highest;
}

bool isRational(std::span<const HomogeneousPoint> curve) {
    return std::any_of(curve.begin(), curve.end(), [&](const HomogeneousPoint& p) { return p.w != curve.front().w; });
}

}  // namespace

/// With the curve B / w, the squared distance is B . B / w^2, and its slope has the sign of w (B . B') - w' (B . B).
DistanceBounds distanceBounds(std::span<const HomogeneousPoint> curve, double error) {
    const std::size_t degree = curve.size() - 1;
    const Coordinate xyz[3] = {{curve, &HomogeneousPoint::x, error},
                               {curve, &HomogeneousPoint::y, error},
                               {curve, &HomogeneousPoint::z, error}};
    Polynomial square(2 * degree + 1);
    Polynomial rise(2 * degree);
    for (const Coordinate& each : xyz) {
        addProduct(square, each.value, each.value);
        addProduct(rise, each.value, each.rate);
    }
    const double weight = highestWeight(curve);
    DistanceBounds bounds{.lowestSquared = lowestCoefficient(square) / (weight * weight)};
    if (isRational(curve)) {
        const Coordinate w(curve, &HomogeneousPoint::w, kEpsilon * weight);
        Polynomial slope(3 * degree);
        addProduct(slope, w.value, rise);
        addProduct(slope, w.rate, square, -1.0);
        rise = std::move(slope);
    }
    countTurns(rise, bounds);
    return bounds;
}

HomogeneousPoint mixed(const HomogeneousPoint& a, const HomogeneousPoint& b, double share) {
    // Exact at both ends, where a + (b - a) share would be off by a rounding error.
    const double rest = 1.0 - share;
    return {rest * a.x + share * b.x, rest * a.y + share * b.y, rest * a.z + share * b.z, rest * a.w + share * b.w};
}

std::pair<BezierPoints, BezierPoints> halves(std::span<const HomogeneousPoint> curve) {
    BezierPoints right(curve.begin(), curve.end());
    BezierPoints left;
    left.reserve(curve.size());
    for (std::size_t remaining = curve.size(); remaining > 0; --remaining) {
        left.push_back(right.front());
        for (std::size_t i = 0; i + 1 < remaining; ++i)
            right[i] = mixed(right[i], right[i + 1], 0.5);
    }
    return {std::move(left), std::move(right)};
}

}  // namespace holdfast
