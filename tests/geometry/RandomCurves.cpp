#include "tests/geometry/RandomCurves.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "geometry/Angles.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::geometry {
namespace {

constexpr double kFarAway = 40.0;

/// Clamped knots at uneven distances.
std::vector<double> clampedKnots(int degree, int controlCount, RandomCurves& random) {
    std::vector<double> knots(static_cast<std::size_t>(degree) + 1, 0.0);
    double knot = 0.0;
    for (int i = degree + 1; i < controlCount; ++i) {
        knot += random.number(0.2, 1.5);
        knots.push_back(knot);
    }
    knot += random.number(0.2, 1.5);
    knots.insert(knots.end(), static_cast<std::size_t>(degree) + 1, knot);
    return knots;
}

}  // namespace

double RandomCurves::number(double low, double high) {
    return low + (high - low) * std::ldexp(static_cast<double>(m_bits() >> 11U), -53);
}

int RandomCurves::count(int low, int high) {
    return low + static_cast<int>(number(0.0, high - low + 1.0));
}

Vec2 RandomCurves::point(double reach) {
    return {number(-reach, reach), number(-reach, reach)};
}

std::vector<Vec2> RandomCurves::points(int howMany) {
    std::vector<Vec2> all(static_cast<std::size_t>(howMany));
    std::generate(all.begin(), all.end(), [this] { return point(); });
    return all;
}

std::vector<double> RandomCurves::weights(std::size_t howMany) {
    std::vector<double> all(howMany);
    std::generate(all.begin(), all.end(), [this] { return number(0.3, 3.0); });
    return all;
}

SplineShape RandomCurves::openSpline(bool rational) {
    SplineShape spline;
    spline.degree = count(2, 4);
    spline.control = points(count(spline.degree + 1, 10));
    spline.knots = clampedKnots(spline.degree, static_cast<int>(spline.control.size()), *this);
    spline.weights = rational ? weights(spline.control.size()) : std::vector<double>{};
    return spline;
}

SplineShape RandomCurves::periodicSpline() {
    SplineShape spline;
    spline.degree = count(2, 3);
    spline.periodic = true;
    spline.control = points(count(4, 9));
    spline.knots.push_back(number(-1.0, 1.0));
    for (std::size_t i = 0; i < spline.control.size(); ++i) {
        spline.knots.push_back(spline.knots.back() + number(0.2, 1.5));
    }
    spline.weights = count(0, 1) == 1 ? weights(spline.control.size()) : std::vector<double>{};
    return spline;
}

PolylineShape RandomCurves::polyline() {
    PolylineShape shape;
    shape.vertices = points(count(2, 7));
    shape.closed = shape.vertices.size() > 2 && count(0, 1) == 1;
    for (std::size_t i = 0; i < shape.vertices.size(); ++i) {
        shape.bulges.push_back(count(0, 1) == 1 ? number(-1.5, 1.5) : 0.0);
        shape.ids.push_back(static_cast<int>(i) + 11);
    }
    return shape;
}

EllipticalArcShape RandomCurves::ellipticalArc() {
    const double start = number(0.0, kTurn);
    return {point(5.0), number(2.0, 8.0) * polar(number(0.0, kTurn)), number(0.1, 1.0), start,
            start + number(0.3, kTurn)};
}

Shape RandomCurves::make(CurveKind kind) {
    switch (kind) {
        case CurveKind::line:
            return LineShape{point(), point()};
        case CurveKind::ray:
            return RayShape{point(), number(0.5, 3.0) * polar(number(0.0, kTurn))};
        case CurveKind::xline:
            return XlineShape{point(), number(0.5, 3.0) * polar(number(0.0, kTurn))};
        case CurveKind::arc: {
            const double start = number(0.0, kTurn);
            return ArcShape{point(5.0), number(1.0, 8.0), start, start + number(0.3, kTurn)};
        }
        case CurveKind::circle:
            return CircleShape{point(5.0), number(1.0, 8.0)};
        case CurveKind::ellipse: {
            const EllipticalArcShape part = ellipticalArc();
            return EllipseShape{part.centre, part.majorAxis, part.ratio};
        }
        case CurveKind::ellipticalArc:
            return ellipticalArc();
        case CurveKind::spline:
            return openSpline(false);
        case CurveKind::rationalSpline:
            return openSpline(true);
        case CurveKind::periodicSpline:
            return periodicSpline();
        case CurveKind::polyline:
            return polyline();
    }
    return {};
}

Chords chordsOf(const Shape& shape, int howMany) {
    const ParamRange range = paramRange(shape);
    const double first = std::max(range.first, -kFarAway);
    const double last = std::min(range.last, kFarAway);
    Chords chords;
    for (int i = 0; i <= howMany; ++i) {
        chords.params.push_back(first + (last - first) * i / howMany);
    }
    chords.points = pointsAt(shape, chords.params);
    return chords;
}

std::vector<ChordCrossing> chordCrossings(const Chords& a, const Chords& b) {
    constexpr double kAwayFromEnds = 0.1;
    constexpr double kLeastSine = 0.1;
    const auto isNearEnd = [](const Chords& chords, Vec2 p) {
        return distance(chords.points.front(), p) < kAwayFromEnds || distance(chords.points.back(), p) < kAwayFromEnds;
    };
    std::vector<std::size_t> order(b.points.size() - 1);
    std::iota(order.begin(), order.end(), 0U);
    const auto leftOf = [&](std::size_t j) { return std::min(b.points[j].x, b.points[j + 1].x); };
    std::sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) { return leftOf(i) < leftOf(j); });
    double widest = 0.0;
    for (std::size_t j = 0; j + 1 < b.points.size(); ++j) {
        widest = std::max(widest, std::abs(b.points[j + 1].x - b.points[j].x));
    }
    std::vector<ChordCrossing> found;
    for (std::size_t i = 0; i + 1 < a.points.size(); ++i) {
        const Vec2 alongA = a.points[i + 1] - a.points[i];
        const double low = std::min(a.points[i].x, a.points[i + 1].x) - widest;
        const double high = std::max(a.points[i].x, a.points[i + 1].x);
        auto next =
            std::lower_bound(order.begin(), order.end(), low, [&](std::size_t j, double x) { return leftOf(j) < x; });
        for (; next != order.end() && leftOf(*next) <= high; ++next) {
            const std::size_t j = *next;
            const Vec2 alongB = b.points[j + 1] - b.points[j];
            const Vec2 gap = b.points[j] - a.points[i];
            const double sine = cross(alongA, alongB);
            if (std::abs(sine) < kLeastSine * norm(alongA) * norm(alongB)) {
                continue;
            }
            const double s = cross(gap, alongB) / sine;
            const double t = cross(gap, alongA) / sine;
            const Vec2 at = a.points[i] + s * alongA;
            if (s < 0.0 || s >= 1.0 || t < 0.0 || t >= 1.0 || isNearEnd(a, at) || isNearEnd(b, at)) {
                continue;
            }
            found.push_back({at, a.params[i] + s * (a.params[i + 1] - a.params[i]),
                             b.params[j] + t * (b.params[j + 1] - b.params[j])});
        }
    }
    return found;
}

}  // namespace holdfast::geometry
