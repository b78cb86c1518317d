#include "geometry/crossings/Sharpening.h"

#include <algorithm>
#include <cmath>

namespace holdfast::geometry {
namespace {

constexpr double kSameTangent = 1e-5;

/// How far a meeting may move, in a frame; farther off there is another one.
constexpr double kLongestMove = 0.1;

ParamPair keptInside(const Piece& a, const Piece& b, ParamPair at) {
    return {std::clamp(at.a, a.first, a.last), std::clamp(at.b, b.first, b.last)};
}

/// One step of Newton's method for a(s) = b(t); none where the tangents agree.
ParamPair stepToCrossing(const Piece& a, const Piece& b, ParamPair at) {
    if (isTangent(a, b, at)) {
        return at;
    }
    const Derivatives onA = derivatives(a.form, at.a);
    const Derivatives onB = derivatives(b.form, at.b);
    const Vec2 gap = onB.point - onA.point;
    const double sine = cross(onA.first, onB.first);
    return keptInside(a, b, {at.a + cross(gap, onB.first) / sine, at.b + cross(gap, onA.first) / sine});
}

/// One step of Newton's method for a' x b' = 0 and (a - b) . a' = 0.
ParamPair stepToTouch(const Piece& a, const Piece& b, ParamPair at) {
    const Derivatives onA = derivatives(a.form, at.a);
    const Derivatives onB = derivatives(b.form, at.b);
    const Vec2 gap = onA.point - onB.point;
    const double sine = cross(onA.first, onB.first);
    const double sineByA = cross(onA.second, onB.first);
    const double sineByB = cross(onA.first, onB.second);
    const double along = dot(gap, onA.first);
    const double alongByA = dot(onA.first, onA.first) + dot(gap, onA.second);
    const double alongByB = -dot(onB.first, onA.first);
    const double determinant = sineByA * alongByB - sineByB * alongByA;
    if (determinant == 0.0) {
        return at;
    }
    return keptInside(a, b,
                      {at.a - (sine * alongByB - along * sineByB) / determinant,
                       at.b - (along * sineByA - sine * alongByA) / determinant});
}

}  // namespace

double gapAt(const Piece& a, const Piece& b, ParamPair at) {
    return distance(derivatives(a.form, at.a).point, derivatives(b.form, at.b).point);
}

bool isTangent(const Piece& a, const Piece& b, ParamPair at) {
    const Vec2 alongA = derivatives(a.form, at.a).first;
    const Vec2 alongB = derivatives(b.form, at.b).first;
    return std::abs(cross(alongA, alongB)) <= kSameTangent * norm(alongA) * norm(alongB);
}

bool isTouching(const Piece& a, const Piece& b, ParamPair at) {
    return gapAt(a, b, at) <= kFrameTolerance && isTangent(a, b, at);
}

ParamPair touchNear(const Piece& a, const Piece& b, ParamPair rough) {
    for (int i = 0; i < 8; ++i) {
        rough = stepToTouch(a, b, rough);
    }
    return rough;
}

ParamPair sharpened(const Piece& a, const Piece& b, ParamPair rough) {
    const auto isNear = [&](ParamPair at) {
        return distance(derivatives(a.form, rough.a).point, derivatives(a.form, at.a).point) <= kLongestMove;
    };
    const ParamPair touch = touchNear(a, b, rough);
    if (isNear(touch) && isTouching(a, b, touch)) {
        return touch;
    }
    ParamPair crossing = rough;
    for (int i = 0; i < 3; ++i) {
        crossing = stepToCrossing(a, b, crossing);
    }
    return isNear(crossing) && gapAt(a, b, crossing) < gapAt(a, b, rough) ? crossing : rough;
}

}  // namespace holdfast::geometry
