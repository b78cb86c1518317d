#pragma once

#include <optional>
#include <span>
#include <vector>

#include "geometry/CurveEnd.h"
#include "geometry/Shapes.h"
#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

// What we ask of the OpenCASCADE geometry library. None of its types appear here; its exceptions arrive as
// GeometryError. Its tolerances are lengths: curves that meet are to be brought into a Frame before.

/// One span of a spline as a Bezier curve, and the knots between which it lies.
struct BezierSpan {
    BezierForm form;
    double firstKnot = 0.0;
    double lastKnot = 0.0;
};

/// Where two pieces meet, by their own parameters: a point, or a stretch along which they run together.
struct Contact {
    double firstA = 0.0, firstB = 0.0;
    double lastA = 0.0, lastB = 0.0;  ///< those of the other end of a stretch; for a point the same again
};

/// The centre of a circle that touches two curves, and the parameters at which it does.
struct TangentCentre {
    Vec2 centre;
    double paramA = 0.0;
    double paramB = 0.0;
};

Derivatives bezierDerivatives(const BezierForm& bezier, double t);

/// The Bezier curve over another range of its parameter, which may reach beyond 0 ... 1.
BezierForm bezierPart(const BezierForm& bezier, double first, double last);

/// Derivatives of a spline at several parameters.
std::vector<Derivatives> splineDerivatives(const SplineShape& spline, std::span<const double> params);

std::vector<BezierSpan> bezierSpans(const SplineShape& spline);

/// The part of a spline between two parameters, exact, with the same parameters and clamped ends. Of a periodic one the
/// last parameter may lie up to a period beyond the first.
SplineShape splinePart(const SplineShape& spline, double first, double last);

/// A spline in a frame of which one end is moved outwards to a knot beyond it, along the curve of its outermost span.
/// The rest stays, as do degree and number of control points. None where that would take a weight of 0 or less.
std::optional<SplineShape> splineProlonged(const SplineShape& spline, CurveEnd end, double knot);

/// A spline in a frame with a further span from one end to a point, joined with equal curvature.
SplineShape splineLedTo(const SplineShape& spline, CurveEnd end, Vec2 point);

SplineShape splineReversed(const SplineShape& spline);

/// All meetings of two pieces, of which not both are unbounded on the same side; unordered, possibly with doubles.
std::vector<Contact> contactsOf(const Piece& a, const Piece& b, double tolerance);

/// Parameters at which the line to the point is at right angles to the curve, within the piece. The ends are not among
/// them, and none may be found.
std::vector<double> perpendicularFeet(const Piece& piece, Vec2 point);

/// Centres of the circles of a radius that touch both pieces. Lines count as unbounded and circles as full, and of
/// ellipses and splines what touches near an end may be missing.
std::vector<TangentCentre> tangentCentres(const Piece& a, const Piece& b, double radius, double tolerance);

}  // namespace holdfast::geometry
