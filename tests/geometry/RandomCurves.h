#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "geometry/Shapes.h"

namespace holdfast::geometry {

enum class CurveKind {
    line,
    ray,
    xline,
    arc,
    circle,
    ellipse,
    ellipticalArc,
    spline,
    rationalSpline,
    periodicSpline,
    polyline
};

inline constexpr CurveKind kAllCurveKinds[] = {CurveKind::line,           CurveKind::ray,
                                               CurveKind::xline,          CurveKind::arc,
                                               CurveKind::circle,         CurveKind::ellipse,
                                               CurveKind::ellipticalArc,  CurveKind::spline,
                                               CurveKind::rationalSpline, CurveKind::periodicSpline,
                                               CurveKind::polyline};

/// Curves in and around the square from -10 to 10, the same ones for the same seed on every machine.
class RandomCurves {
public:
    explicit RandomCurves(std::uint64_t seed) : m_bits(seed) {}

    Shape make(CurveKind kind);
    double number(double low, double high);
    int count(int low, int high);
    Vec2 point(double reach = 10.0);

private:
    SplineShape openSpline(bool rational);
    SplineShape periodicSpline();
    PolylineShape polyline();
    EllipticalArcShape ellipticalArc();
    std::vector<Vec2> points(int howMany);
    std::vector<double> weights(std::size_t howMany);

    std::mt19937_64 m_bits;
};

/// A curve as many short chords: what crossings look like to someone who only draws.
struct Chords {
    std::vector<Vec2> points;
    std::vector<double> params;
};

/// Rays and xlines as far as 40 from their base point.
Chords chordsOf(const Shape& shape, int howMany);

/// Where chords of two curves cross at an angle of at least 0.1 and away from the curves' ends: crossings that any
/// correct intersection has to find.
struct ChordCrossing {
    Vec2 point;
    double paramA = 0.0;
    double paramB = 0.0;
};
std::vector<ChordCrossing> chordCrossings(const Chords& a, const Chords& b);

}  // namespace holdfast::geometry
