#include "geometry/curves/Nearest.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

double squareDistance(const Piece& piece, double t, Vec2 point) {
    const Vec2 gap = derivatives(piece.form, t).point - point;
    return dot(gap, gap);
}

double nearerOf(const Piece& piece, double one, double other, Vec2 point) {
    return squareDistance(piece, other, point) < squareDistance(piece, one, point) ? other : one;
}

/// Newton's method for gap . c' = 0, as long as it comes nearer.
double sharpenedFoot(const Piece& piece, double t, Vec2 point) {
    for (int i = 0; i < 4; ++i) {
        const Derivatives at = derivatives(piece.form, t);
        const Vec2 gap = at.point - point;
        const double slope = dot(at.first, at.first) + dot(gap, at.second);
        const double next = slope > 0.0 ? t - dot(gap, at.first) / slope : t;
        if (!(next >= piece.first && next <= piece.last) || squareDistance(piece, next, point) > dot(gap, gap)) {
            break;
        }
        t = next;
    }
    return t;
}

double footOnCircle(const Piece& piece, Vec2 point) {
    const auto& circle = std::get<ConicForm>(piece.form);
    const Vec2 towards = point - circle.centre;
    const double angle = std::atan2(dot(towards, circle.minor), dot(towards, circle.major));
    const double turns = std::floor((angle - piece.first) / kTurn);
    const double t = angle - turns * kTurn;
    return t <= piece.last ? t : nearerOf(piece, piece.first, piece.last, point);
}

/// The library may miss the nearest point where it is an end, so both ends take part.
double footOnGeneral(const Piece& piece, Vec2 point) {
    double best = nearerOf(piece, piece.first, piece.last, point);
    for (const double foot : perpendicularFeet(piece, point)) {
        best = nearerOf(piece, best, std::clamp(foot, piece.first, piece.last), point);
    }
    return sharpenedFoot(piece, best, point);
}

}  // namespace

double nearestParam(const Piece& piece, Vec2 point) {
    if (const auto* line = std::get_if<LineForm>(&piece.form)) {
        return std::clamp(dot(point - line->origin, line->direction), piece.first, piece.last);
    }
    if (isCircle(piece.form)) {
        return footOnCircle(piece, point);
    }
    const Frame frame = frameOf(piece);
    return footOnGeneral(inFrame(piece, frame), frame.enter(point));
}

Nearest nearestOn(const Shape& shape, Vec2 point, Extent extent) {
    if (!isFinite(point)) {
        throw GeometryError("a coordinate of the point is not a finite number");
    }
    const PieceList list = pieceListOf(shape, extent);
    Nearest best{{}, 0.0, std::numeric_limits<double>::infinity()};
    for (const Piece& piece : list.pieces) {
        if (boundsOf(piece).distanceTo(point) >= best.distance) {
            continue;
        }
        const double t = nearestParam(piece, point);
        const Vec2 foot = derivatives(piece.form, t).point;
        if (distance(foot, point) < best.distance) {
            best = {foot, list.atSeam(piece.ownerAt(t)), distance(foot, point)};
        }
    }
    return best;
}

std::optional<double> paramAtPoint(const Shape& shape, Vec2 point, double tolerance, Extent extent) {
    const Nearest nearest = nearestOn(shape, point, extent);
    return nearest.distance <= tolerance ? std::optional(nearest.param) : std::nullopt;
}

}  // namespace holdfast::geometry
