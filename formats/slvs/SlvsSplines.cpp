#include "formats/slvs/SlvsSplines.h"

#include <algorithm>
#include <cmath>

#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

constexpr double kEven = 1e-9;  // how far steps of a parameter may differ, in steps

/// One row for each unknown point: what it is multiplied with, and what the sum is.
struct Row {
    std::vector<double> factors;
    Vec2 sum;
};

/// Elimination with the largest pivot. The systems are those of interpolation, which always have a solution.
std::vector<Vec2> solved(std::vector<Row> rows) {
    const std::size_t count = rows.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto largest = std::max_element(
            rows.begin() + static_cast<std::ptrdiff_t>(i), rows.end(),
            [&](const Row& a, const Row& b) { return std::abs(a.factors[i]) < std::abs(b.factors[i]); });
        std::swap(rows[i], *largest);
        for (std::size_t j = i + 1; j < count; ++j) {
            const double factor = rows[j].factors[i] / rows[i].factors[i];
            for (std::size_t k = i; k < count; ++k)
                rows[j].factors[k] -= factor * rows[i].factors[k];
            rows[j].sum = rows[j].sum - factor * rows[i].sum;
        }
    }
    std::vector<Vec2> points(count);
    for (std::size_t i = count; i-- > 0;) {
        Vec2 sum = rows[i].sum;
        for (std::size_t k = i + 1; k < count; ++k)
            sum = sum - rows[i].factors[k] * points[k];
        points[i] = (1.0 / rows[i].factors[i]) * sum;
    }
    return points;
}

/// Where a spline with these knots would be if all control points were 0 but one at 1.
double weightAt(SplineShape spline, std::size_t control, double param) {
    std::fill(spline.control.begin(), spline.control.end(), Vec2{});
    spline.control[control] = {1.0, 0.0};
    return splinePoint(spline, param).x;
}

/// Finds the control points from `first` on that bring the spline through the points at params 0, 1, ... + offset.
void interpolate(SplineShape& spline, std::size_t first, std::span<const Vec2> through, double offset) {
    std::vector<Row> rows;
    for (std::size_t i = 0; i < through.size(); ++i) {
        const double param = static_cast<double>(i) + offset;
        Row row{{}, through[i]};
        for (std::size_t j = 0; j < spline.control.size(); ++j) {
            const double weight = weightAt(spline, j, param);
            if (j >= first && j < first + through.size())
                row.factors.push_back(weight);
            else
                row.sum = row.sum - weight * spline.control[j];
        }
        rows.push_back(std::move(row));
    }
    const std::vector<Vec2> found = solved(std::move(rows));
    std::copy(found.begin(), found.end(), spline.control.begin() + static_cast<std::ptrdiff_t>(first));
}

std::vector<double> knotsOfOpen(std::size_t segments) {
    std::vector<double> knots(4, 0.0);
    for (std::size_t i = 1; i < segments; ++i)
        knots.push_back(static_cast<double>(i));
    knots.insert(knots.end(), 4, static_cast<double>(segments));
    return knots;
}

std::vector<double> knotsOfClosed(std::size_t points) {
    std::vector<double> knots(points + 1);
    for (std::size_t i = 0; i <= points; ++i)
        knots[i] = static_cast<double>(i);
    return knots;
}

/// True when knots are others but for where they begin and their scale.
bool areAlike(std::span<const double> knots, std::span<const double> wanted) {
    if (knots.size() != wanted.size())
        return false;
    const double scale = (wanted.back() - wanted.front()) / (knots.back() - knots.front());
    for (std::size_t i = 0; i < knots.size(); ++i)
        if (!(std::abs((knots[i] - knots.front()) * scale - (wanted[i] - wanted.front())) <= kEven))
            return false;
    return true;
}

bool isSlvsOpen(const SplineShape& spline) {
    return !spline.periodic && spline.degree == 3 && spline.control.size() >= kSlvsCubicPoints &&
           spline.control.size() <= kSlvsCubicPoints + kSlvsMostExtraPoints &&
           areAlike(spline.knots, knotsOfOpen(spline.control.size() - 3));
}

bool isSlvsClosed(const SplineShape& spline) {
    return spline.periodic && spline.degree == 3 && spline.control.size() > kSlvsClosedPoints &&
           spline.control.size() <= kSlvsClosedPoints + kSlvsMostExtraPoints &&
           areAlike(spline.knots, knotsOfClosed(spline.control.size()));
}

bool isPolynomial(const SplineShape& spline) {
    return std::all_of(spline.weights.begin(), spline.weights.end(),
                       [&](double weight) { return weight == spline.weights.front(); });
}

}  // namespace

std::optional<SplineShape> splineThrough(std::span<const Vec2> points, bool isClosed) {
    const std::size_t least = isClosed ? kSlvsClosedPoints : kSlvsCubicPoints;
    if (points.size() < least || points.size() > least + kSlvsMostExtraPoints)
        return std::nullopt;
    SplineShape spline;
    spline.periodic = isClosed;
    spline.control.assign(points.begin(), points.end());
    if (isClosed) {
        spline.knots = knotsOfClosed(points.size());
        interpolate(spline, 0, points, 0.0);
        return spline;
    }
    spline.knots = knotsOfOpen(points.size() - 3);
    interpolate(spline, 2, points.subspan(2, points.size() - kSlvsCubicPoints), 1.0);
    return spline;
}

std::optional<std::vector<Vec2>> slvsPointsOf(const SplineShape& spline) {
    if (!isPolynomial(spline) || (!isSlvsOpen(spline) && !isSlvsClosed(spline)))
        return std::nullopt;
    std::vector<Vec2> points = spline.control;
    const std::size_t steps = spline.control.size() - (spline.periodic ? 0 : 3);
    const double first = spline.knots.front();
    const double step = (spline.knots.back() - first) / static_cast<double>(steps);
    const auto at = [&](std::size_t i) { return splinePoint(spline, first + static_cast<double>(i) * step); };
    if (spline.periodic)
        for (std::size_t i = 0; i < points.size(); ++i)
            points[i] = at(i);
    for (std::size_t i = 2; !spline.periodic && i + 2 < points.size(); ++i)
        points[i] = at(i - 1);
    return points;
}

bool isSlvsControl(const SplineShape& spline, std::size_t number) {
    return !spline.periodic && number < spline.control.size() && (number < 2 || number + 2 >= spline.control.size());
}

}  // namespace holdfast::formats
