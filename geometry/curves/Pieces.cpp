#include "geometry/curves/Pieces.h"

#include <cassert>
#include <cmath>
#include <limits>
#include <string>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/curves/Polylines.h"
#include "geometry/curves/Soundness.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A flatter arc segment is reckoned as straight: its centre would lie so far off that the digits run out.
constexpr double kStraightBulge = 1e-8;

/// A Bezier piece that turns less than this needs no halving, nor does one halved so often.
constexpr double kFlatTurning = kPi / 8.0;
constexpr int kMostHalvings = 5;

Piece linePiece(Vec2 from, Vec2 to) {
    return {.form = LineForm{from, unit(to - from)}, .first = 0.0, .last = distance(from, to)};
}

Piece unboundedPiece(Vec2 point, Vec2 direction, double first) {
    return {.form = LineForm{point, unit(direction)}, .first = first, .last = kInfinity};
}

ConicForm circleForm(Vec2 centre, double radius) {
    return {centre, {radius, 0.0}, {0.0, radius}};
}

ConicForm ellipseForm(Vec2 centre, Vec2 majorAxis, double ratio) {
    return {centre, majorAxis, minorAxis(majorAxis, ratio)};
}

Piece arcSegment(Vec2 from, Vec2 to, double bulge) {
    const Vec2 centre = centreOfBulge(from, to, bulge);
    const Vec2 major = from - centre;
    const double angle = std::abs(angleOfBulge(bulge));
    return {
        .form = ConicForm{centre, major, bulge > 0.0 ? leftOf(major) : -leftOf(major)}, .first = 0.0, .last = angle};
}

Piece simplePiece(const LineShape& line) {
    return linePiece(line.start, line.end);
}
Piece simplePiece(const RayShape& ray) {
    return unboundedPiece(ray.point, ray.direction, 0.0);
}
Piece simplePiece(const XlineShape& line) {
    return unboundedPiece(line.point, line.direction, -kInfinity);
}
Piece simplePiece(const ArcShape& arc) {
    return {.form = circleForm(arc.centre, arc.radius), .first = arc.startAngle, .last = arc.endAngle};
}
Piece simplePiece(const CircleShape& circle) {
    return {.form = circleForm(circle.centre, circle.radius), .first = 0.0, .last = kTurn};
}
Piece simplePiece(const EllipseShape& shape) {
    return {.form = ellipseForm(shape.centre, shape.majorAxis, shape.ratio), .first = 0.0, .last = kTurn};
}
Piece simplePiece(const EllipticalArcShape& arc) {
    return {.form = ellipseForm(arc.centre, arc.majorAxis, arc.ratio), .first = arc.startParam, .last = arc.endParam};
}

void unboundLine(Piece& piece, bool before, bool after) {
    piece.first = before ? -kInfinity : piece.first;
    piece.last = after ? kInfinity : piece.last;
}

void toCarrier(Piece& piece) {
    if (std::holds_alternative<LineForm>(piece.form)) {
        unboundLine(piece, true, true);
    } else if (std::holds_alternative<ConicForm>(piece.form)) {
        piece.last = piece.first + kTurn;
    }
}

/// The ends of an open polyline go on along their segments; an arc as the whole circle, on the free side only.
void prolongEnds(std::vector<Piece>& pieces) {
    if (std::holds_alternative<LineForm>(pieces.front().form)) {
        unboundLine(pieces.front(), true, false);
    } else if (pieces.size() > 1) {
        pieces.front().first = pieces.front().last - kTurn;
    }
    if (std::holds_alternative<LineForm>(pieces.back().form)) {
        unboundLine(pieces.back(), false, true);
    } else {
        pieces.back().last = pieces.back().first + kTurn;
    }
}

std::vector<Piece> polylinePieces(const PolylineShape& polyline, Extent extent) {
    std::vector<Piece> pieces;
    const std::size_t count = segmentCount(polyline);
    pieces.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (polyline.vertices[i] != polyline.vertices[(i + 1) % polyline.vertices.size()]) {
            pieces.push_back(segmentPiece(polyline, i));
        }
    }
    if (extent == Extent::carrier && !polyline.closed && !pieces.empty()) {
        prolongEnds(pieces);
    }
    return pieces;
}

/// A straight span reckons as a line: crossings and overlaps of lines are found exactly.
Piece spanPiece(const BezierSpan& span) {
    const double width = span.lastKnot - span.firstKnot;
    if (span.form.poles.size() == 2 && span.form.weights.empty() && span.form.poles[0] != span.form.poles[1]) {
        Piece line = linePiece(span.form.poles[0], span.form.poles[1]);
        line.ownerAtZero = span.firstKnot;
        line.ownerRate = width / line.last;
        return line;
    }
    return {.form = span.form, .first = 0.0, .last = 1.0, .ownerAtZero = span.firstKnot, .ownerRate = width};
}

/// The angle through which the control polygon turns in all.
double turningOf(const BezierForm& bezier) {
    double sum = 0.0;
    for (std::size_t i = 2; i < bezier.poles.size(); ++i) {
        const Vec2 before = bezier.poles[i - 1] - bezier.poles[i - 2];
        const Vec2 after = bezier.poles[i] - bezier.poles[i - 1];
        sum += std::abs(std::atan2(cross(before, after), dot(before, after)));
    }
    return sum;
}

/// Halves what turns far: where two crossings lie close together, the library finds both on flat pieces only.
void appendFlat(std::vector<Piece>& pieces, const BezierSpan& span, int halvings) {
    if (halvings == 0 || turningOf(span.form) <= kFlatTurning) {
        pieces.push_back(spanPiece(span));
        return;
    }
    const double middle = 0.5 * (span.firstKnot + span.lastKnot);
    appendFlat(pieces, {bezierPart(span.form, 0.0, 0.5), span.firstKnot, middle}, halvings - 1);
    appendFlat(pieces, {bezierPart(span.form, 0.5, 1.0), middle, span.lastKnot}, halvings - 1);
}

std::vector<Piece> splinePieces(const SplineShape& spline, int halvings) {
    std::vector<Piece> pieces;
    for (const BezierSpan& span : bezierSpans(spline)) {
        appendFlat(pieces, span, halvings);
    }
    return pieces;
}

std::vector<Piece> cutIntoPieces(const Shape& shape, Extent extent, int halvings) {
    requireSound(shape);
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        return polylinePieces(*polyline, extent);
    }
    if (const auto* spline = std::get_if<SplineShape>(&shape)) {
        return splinePieces(*spline, halvings);
    }
    Piece piece = pieceAt(shape, 0.0);
    if (extent == Extent::carrier) {
        toCarrier(piece);
    }
    return {piece};
}

Derivatives derivativesOf(const LineForm& line, double t) {
    return {line.origin + t * line.direction, line.direction, {}};
}

Derivatives derivativesOf(const ConicForm& conic, double t) {
    const Vec2 radial = std::cos(t) * conic.major + std::sin(t) * conic.minor;
    return {conic.centre + radial, std::cos(t) * conic.minor - std::sin(t) * conic.major, -radial};
}

Derivatives derivativesOf(const BezierForm& bezier, double t) {
    return bezierDerivatives(bezier, t);
}

void addBounds(Box& box, const LineForm& line, const Piece& piece) {
    const auto coordinate = [](double origin, double direction, double t) {
        return direction == 0.0 ? origin : origin + direction * t;  // zero times infinity is no number
    };
    for (const double t : {piece.first, piece.last}) {
        box.add(Vec2{coordinate(line.origin.x, line.direction.x, t), coordinate(line.origin.y, line.direction.y, t)});
    }
}

/// The ends, and where the tangent is horizontal or vertical.
void addBounds(Box& box, const ConicForm& conic, const Piece& piece) {
    box.add(derivativesOf(conic, piece.first).point);
    box.add(derivativesOf(conic, piece.last).point);
    for (const double base : {std::atan2(conic.minor.x, conic.major.x), std::atan2(conic.minor.y, conic.major.y)}) {
        const double next = base + std::ceil((piece.first - base) / kPi) * kPi;
        for (const double t : {next, next + kPi}) {
            box.add(derivativesOf(conic, std::min(t, piece.last)).point);
        }
    }
}

void addBounds(Box& box, const BezierForm& bezier, const Piece&) {
    for (const Vec2 pole : bezier.poles) {
        box.add(pole);
    }
}

Form enter(const LineForm& line, const Frame& frame) {
    return LineForm{frame.enter(line.origin), line.direction};
}

Form enter(const ConicForm& conic, const Frame& frame) {
    return ConicForm{frame.enter(conic.centre), frame.scale * conic.major, frame.scale * conic.minor};
}

Form enter(BezierForm bezier, const Frame& frame) {
    for (Vec2& pole : bezier.poles) {
        pole = frame.enter(pole);
    }
    return bezier;
}

}  // namespace

Derivatives derivatives(const Form& form, double t) {
    return std::visit([t](const auto& curve) { return derivativesOf(curve, t); }, form);
}

Piece segmentPiece(const PolylineShape& polyline, std::size_t index) {
    const Vec2 from = polyline.vertices[index];
    const Vec2 to = polyline.vertices[(index + 1) % polyline.vertices.size()];
    if (from == to) {
        throw GeometryError("polyline: segment " + std::to_string(index) + " has no length");
    }
    const double bulge = polyline.bulges[index];
    Piece piece = std::abs(bulge) < kStraightBulge ? linePiece(from, to) : arcSegment(from, to, bulge);
    piece.ownerAtZero = static_cast<double>(index);
    piece.ownerRate = 1.0 / piece.last;
    return piece;
}

std::vector<Piece> piecesOf(const Shape& shape, Extent extent) {
    return cutIntoPieces(shape, extent, kMostHalvings);
}

std::vector<Piece> spansOf(const Shape& shape, Extent extent) {
    return cutIntoPieces(shape, extent, 0);
}

Piece pieceAt(const Shape& shape, double param) {
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        const double last = static_cast<double>(segmentCount(*polyline) - 1);
        return segmentPiece(*polyline, static_cast<std::size_t>(std::clamp(std::floor(param), 0.0, last)));
    }
    return std::visit(
        [&](const auto& curve) -> Piece {
            if constexpr (requires { simplePiece(curve); }) {
                return simplePiece(curve);
            } else {
                throw GeometryError(std::string(kindName(shape)) + ": is not a simple curve");
            }
        },
        shape);
}

PieceList pieceListOf(const Shape& shape, Extent extent) {
    PieceList list;
    list.pieces = piecesOf(shape, extent);
    const Piece& front = list.pieces.front();
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        list.period = polyline->closed ? static_cast<double>(segmentCount(*polyline)) : 0.0;
    } else if (const auto* spline = std::get_if<SplineShape>(&shape)) {
        list.first = spline->knots.front();
        list.period = spline->periodic ? spline->knots.back() - list.first : 0.0;
    } else if (std::holds_alternative<ConicForm>(front.form)) {
        list.first = front.first;
        list.period = front.last >= front.first + kTurn ? kTurn : 0.0;
    }
    return list;
}

Box boundsOf(const Piece& piece) {
    Box box;
    std::visit([&](const auto& form) { addBounds(box, form, piece); }, piece.form);
    return box;
}

Box boundsOf(const std::vector<Piece>& pieces) {
    Box box;
    for (const Piece& piece : pieces) {
        box.add(boundsOf(piece));
    }
    return box;
}

bool isCircle(const Form& form) {
    const auto* conic = std::get_if<ConicForm>(&form);
    return conic != nullptr && std::abs(norm(conic->major) - norm(conic->minor)) <= 1e-14 * norm(conic->major);
}

Frame frameOf(Vec2 middle, double size) {
    int exponent = 0;
    std::frexp(size, &exponent);
    return {middle, std::ldexp(1.0, 7 - exponent)};
}

Frame frameOf(const Piece& piece) {
    assert(!std::holds_alternative<LineForm>(piece.form));
    Piece whole = piece;
    if (std::holds_alternative<ConicForm>(piece.form)) {
        whole.last = whole.first + kTurn;
    }
    const Box box = boundsOf(whole);
    return frameOf(box.centre(), box.diagonal());
}

/// A line of which the origin is so far away that digits are lost gets another one near the frame.
Piece rebased(const Piece& piece, const Frame& frame) {
    constexpr double kFar = 1e4;
    const auto& line = std::get<LineForm>(piece.form);
    const double shift = dot(frame.origin - line.origin, line.direction);
    if (std::abs(shift) * frame.scale < kFar) {
        return piece;
    }
    return {LineForm{line.origin + shift * line.direction, line.direction}, piece.first - shift, piece.last - shift,
            piece.ownerAt(shift), piece.ownerRate};
}

Piece inFrame(const Piece& piece, const Frame& frame) {
    const bool isLine = std::holds_alternative<LineForm>(piece.form);
    Piece moved = isLine ? rebased(piece, frame) : piece;
    moved.form = std::visit([&](const auto& form) { return enter(form, frame); }, moved.form);
    if (isLine) {
        moved.first *= frame.scale;
        moved.last *= frame.scale;
        moved.ownerRate /= frame.scale;
    }
    return moved;
}

}  // namespace holdfast::geometry
