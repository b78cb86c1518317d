#include "geometry/crossings/Touching.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geometry/Angles.h"

namespace holdfast::geometry {
namespace {

/// Nearly flat curves whose directions differ by more than this somewhere run nowhere in the same direction.
constexpr double kSpread = 0.25 * kPi;

/// Where a nearly flat curve is tried, and at how many places an ellipse is.
constexpr double kTriesOnFlat[] = {0.5, 0.15, 0.85};
constexpr int kTriesOnEllipse = 8;

bool isBezier(const Piece& piece) {
    return std::holds_alternative<BezierForm>(piece.form);
}
bool isConic(const Piece& piece) {
    return std::holds_alternative<ConicForm>(piece.form);
}
bool isEllipse(const Piece& piece) {
    return isConic(piece) && !isCircle(piece.form);
}

/// An angle brought into the piece, or to its end where it lies in the gap.
double intoPiece(const Piece& piece, double angle) {
    const double turns = std::floor((angle - piece.first) / kTurn);
    return std::min(angle - turns * kTurn, piece.last);
}

/// The two places on opposite sides where a conic runs along a direction.
std::array<double, 2> paramsAlong(const Piece& piece, Vec2 direction) {
    const auto& conic = std::get<ConicForm>(piece.form);
    const double t = std::atan2(cross(direction, conic.minor), cross(direction, conic.major));
    return {intoPiece(piece, t), intoPiece(piece, t + kPi)};
}

bool canRunAlong(Vec2 one, Vec2 other) {
    return std::abs(cross(one, other)) <= std::sin(kSpread) * norm(one) * norm(other);
}

/// Places on the other curve that may belong to a place on the first.
std::vector<double> partners(const Piece& other, const Derivatives& at) {
    if (isConic(other)) {
        const auto sides = paramsAlong(other, at.first);
        return {sides.begin(), sides.end()};
    }
    if (const auto* line = std::get_if<LineForm>(&other.form)) {
        return {std::clamp(dot(at.point - line->origin, line->direction), other.first, other.last)};
    }
    return {0.5};
}

void tryFrom(const Piece& a, const Piece& b, ParamPair rough, std::vector<ParamPair>& places) {
    const ParamPair at = touchNear(a, b, rough);
    if (isTouching(a, b, at)) {
        places.push_back(at);
    }
}

std::vector<ParamPair> touchingFlat(const Piece& flat, const Piece& other) {
    std::vector<ParamPair> places;
    for (const double start : kTriesOnFlat) {
        const Derivatives at = derivatives(flat.form, start);
        for (const double partner : partners(other, at)) {
            if (isConic(other) || canRunAlong(at.first, derivatives(other.form, partner).first)) {
                tryFrom(flat, other, {start, partner}, places);
            }
        }
    }
    return places;
}

std::vector<ParamPair> touchingEllipse(const Piece& ellipse, const Piece& other) {
    std::vector<ParamPair> places;
    for (int i = 0; i < kTriesOnEllipse; ++i) {
        const double t = ellipse.first + (i + 0.5) / kTriesOnEllipse * (ellipse.last - ellipse.first);
        for (const double partner : partners(other, derivatives(ellipse.form, t))) {
            tryFrom(ellipse, other, {t, partner}, places);
        }
    }
    return places;
}

std::vector<ParamPair> exchanged(std::vector<ParamPair> places) {
    for (ParamPair& place : places) {
        std::swap(place.a, place.b);
    }
    return places;
}

}  // namespace

std::vector<ParamPair> touchingPlaces(const Piece& a, const Piece& b) {
    if (isBezier(a)) {
        return touchingFlat(a, b);
    }
    if (isBezier(b)) {
        return exchanged(touchingFlat(b, a));
    }
    if (isEllipse(a)) {
        return touchingEllipse(a, b);
    }
    return isEllipse(b) ? exchanged(touchingEllipse(b, a)) : std::vector<ParamPair>{};
}

}  // namespace holdfast::geometry
