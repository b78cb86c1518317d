#include "geometry/construction/TangentArcs.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Pieces.h"
#include "geometry/curves/Soundness.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

/// Two circles whose centres are closer than this, in a frame, are one; so far may a circle be off its curves.
constexpr double kSameCircle = 10.0 * kFrameTolerance;

/// How far pieces of a curve reach into each other, in parts of a piece: what touches at an end of a piece may be
/// missed on it.
constexpr double kLap = 0.05;

/// Into how many parts spans of splines and ellipses are cut. The library misses a few circles in a thousand whatever
/// the cuts are, but not the same ones, so that it is asked twice.
struct Cuts {
    int span, ellipse;
};
constexpr Cuts kCuts[] = {{2, 6}, {3, 9}};

/// Ellipses are cut where nobody places anything.
constexpr double kFirstCut = 0.37;

std::vector<Piece> ellipseParts(const Piece& ellipse, int count) {
    std::vector<Piece> parts;
    const double width = kTurn / count;
    for (int i = 0; i < count; ++i) {
        Piece part = ellipse;
        part.first = kFirstCut + (i - kLap) * width;
        part.last = kFirstCut + (i + 1 + kLap) * width;
        parts.push_back(part);
    }
    return parts;
}

/// Parts of a span, each a little longer than it should be.
std::vector<Piece> spanParts(const Piece& span, int count) {
    std::vector<Piece> parts;
    const double width = 1.0 / count;
    for (int i = 0; i < count; ++i) {
        const double first = (i - kLap) * width;
        const double last = (i + 1 + kLap) * width;
        Piece part = span;
        part.form = bezierPart(std::get<BezierForm>(span.form), first, last);
        part.ownerRate = span.ownerRate * (last - first);
        part.ownerAtZero = span.ownerAt(first);
        parts.push_back(part);
    }
    return parts;
}

/// A piece of a carrier with what its solutions must obey.
struct Side {
    Piece piece;
    Box reach;           ///< where centres of circles that touch the piece may lie
    bool isSpan;         ///< of a spline: what lies beyond the two parameters is none of its points
    double first, last;  ///< the span's range in the owner's parameter
};

/// The carrier in the pieces with which the library does best.
std::vector<Side> sidesOf(const Shape& shape, Cuts cuts, const Frame& frame, double radius) {
    std::vector<Side> sides;
    const bool isSpline = std::holds_alternative<SplineShape>(shape);
    for (const Piece& span : spansOf(shape, Extent::carrier)) {
        std::vector<Piece> parts{span};
        if (std::holds_alternative<BezierForm>(span.form)) {
            parts = spanParts(span, cuts.span);
        } else if (std::holds_alternative<ConicForm>(span.form) && !isCircle(span.form)) {
            parts = ellipseParts(span, cuts.ellipse);
        }
        for (const Piece& part : parts) {
            const Piece moved = inFrame(part, frame);
            sides.push_back({moved, boundsOf(moved).grownBy(radius * frame.scale + kSameCircle), isSpline,
                             span.ownerAt(span.first), span.ownerAt(span.last)});
        }
    }
    return sides;
}

/// What is small against curves or radius would be lost in the library's tolerances.
Frame frameFor(const Shape& a, const Shape& b, double radius) {
    double size = 64.0 * radius;
    Box both;
    for (const Shape* shape : {&a, &b}) {
        const Box box = boundsOf(spansOf(*shape, Extent::bounded));
        if (box.isBounded()) {
            size = std::min(size, box.diagonal());
            both.add(box);
        }
    }
    return frameOf(both.isEmpty() ? Vec2{} : both.centre(), size);
}

/// How far a circle is from touching a piece: by the distance, and by the angle between radius and curve.
double errorAt(const Piece& piece, double t, Vec2 centre, double radius) {
    const Derivatives at = derivatives(piece.form, t);
    const Vec2 spoke = at.point - centre;
    return std::max(std::abs(norm(spoke) - radius), std::abs(dot(spoke, unit(at.first))));
}

/// An angle within one turn from where the curve starts.
double withinTurn(double angle, double start) {
    const double turned = angle - std::floor((angle - start) / kTurn) * kTurn;
    return turned < start + kTurn ? turned : start;
}

/// The owner's parameter; none where it lies beyond the span of a spline.
std::optional<double> ownerParam(const Side& side, double t) {
    const double param = side.piece.ownerAt(t);
    if (std::holds_alternative<ConicForm>(side.piece.form)) {
        return withinTurn(param, side.first);
    }
    const double slack = kSamePoint * (side.last - side.first);
    if (side.isSpan && (param < side.first - slack || param > side.last + slack)) {
        return std::nullopt;
    }
    return side.isSpan ? std::clamp(param, side.first, side.last) : param;
}

bool isLineOrCircle(const Shape& shape) {
    return !std::holds_alternative<SplineShape>(shape) && !std::holds_alternative<EllipseShape>(shape) &&
           !std::holds_alternative<EllipticalArcShape>(shape);
}

class Search {
public:
    Search(const Shape& a, const Shape& b, double radius)
        : m_a(a), m_b(b), m_radius(radius), m_frame(frameFor(a, b, radius)) {}

    std::vector<TangentCircle> all();

private:
    void meetAll(const std::vector<Side>& sidesA, const std::vector<Side>& sidesB);
    void meet(const Side& a, const Side& b);
    void add(const Side& a, const Side& b, const TangentCentre& found);

    const Shape& m_a;
    const Shape& m_b;
    double m_radius;
    Frame m_frame;
    std::vector<TangentCircle> m_circles;
};

std::vector<TangentCircle> Search::all() {
    const bool isExact = isLineOrCircle(m_a) && isLineOrCircle(m_b);
    for (const Cuts& cuts : kCuts) {
        if (&cuts == kCuts || !isExact) {
            meetAll(sidesOf(m_a, cuts, m_frame, m_radius), sidesOf(m_b, cuts, m_frame, m_radius));
        }
    }
    std::sort(m_circles.begin(), m_circles.end(), [](const TangentCircle& one, const TangentCircle& other) {
        return std::pair(one.paramA, one.paramB) < std::pair(other.paramA, other.paramB);
    });
    return m_circles;
}

void Search::meetAll(const std::vector<Side>& sidesA, const std::vector<Side>& sidesB) {
    for (const Side& a : sidesA) {
        for (const Side& b : sidesB) {
            if (a.reach.meets(b.reach)) {
                meet(a, b);
            }
        }
    }
}

void Search::meet(const Side& a, const Side& b) {
    for (const TangentCentre& found : tangentCentres(a.piece, b.piece, m_radius * m_frame.scale, kFrameTolerance)) {
        add(a, b, found);
    }
}

void Search::add(const Side& a, const Side& b, const TangentCentre& found) {
    const double radius = m_radius * m_frame.scale;
    const auto paramA = ownerParam(a, found.paramA);
    const auto paramB = ownerParam(b, found.paramB);
    if (!paramA || !paramB || errorAt(a.piece, found.paramA, found.centre, radius) > kSameCircle ||
        errorAt(b.piece, found.paramB, found.centre, radius) > kSameCircle) {
        return;
    }
    const TangentCircle circle{m_frame.leave(found.centre),
                               m_radius,
                               m_frame.leave(derivatives(a.piece.form, found.paramA).point),
                               m_frame.leave(derivatives(b.piece.form, found.paramB).point),
                               *paramA,
                               *paramB};
    const double same = kSameCircle / m_frame.scale;
    const bool isKnown = std::any_of(m_circles.begin(), m_circles.end(), [&](const TangentCircle& known) {
        return distance(known.centre, circle.centre) <= same && distance(known.pointA, circle.pointA) <= same &&
               distance(known.pointB, circle.pointB) <= same;
    });
    if (!isKnown) {
        m_circles.push_back(circle);
    }
}

void requireSimple(const Shape& shape) {
    requireSound(shape);
    if (std::holds_alternative<PolylineShape>(shape)) {
        throw GeometryError("polyline: tangent arcs take one of its segments");
    }
}

}  // namespace

std::vector<TangentCircle> tangentCircles(const Shape& a, const Shape& b, double radius) {
    requireSimple(a);
    requireSimple(b);
    if (!std::isfinite(radius) || radius <= 0.0) {
        throw GeometryError("tangent arc: radius is " + std::to_string(radius) + "; it must be finite and positive");
    }
    return Search(a, b, radius).all();
}

ArcShape filletArc(const TangentCircle& circle) {
    const Vec2 toA = circle.pointA - circle.centre;
    const Vec2 toB = circle.pointB - circle.centre;
    const bool fromA = cross(toA, toB) >= 0.0;
    const Vec2 from = fromA ? toA : toB;
    const double start = std::atan2(from.y, from.x);
    const double angle = std::atan2(std::abs(cross(toA, toB)), dot(toA, toB));
    return {circle.centre, circle.radius, start, start + angle};
}

}  // namespace holdfast::geometry
