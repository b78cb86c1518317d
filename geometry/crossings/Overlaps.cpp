#include "geometry/crossings/Overlaps.h"

#include <algorithm>
#include <cmath>

#include "geometry/Angles.h"

namespace holdfast::geometry {
namespace {

/// Lines at a greater angle than this cross in a point, however short they are.
constexpr double kLargestAngle = 1e-6;

/// How the parameter of b reads on a: shift + sense * t.
struct Mapping {
    double shift = 0.0;
    double sense = 1.0;

    double onA(double t) const { return shift + sense * t; }
    double onB(double t) const { return sense * (t - shift); }
};

/// What both ranges cover, in the parameter of a; b's range turned by whole turns where asked.
std::optional<Contact> sharedRange(const Piece& a, const Piece& b, const Mapping& mapping, double slack) {
    const auto [low, high] = std::minmax({mapping.onA(b.first), mapping.onA(b.last)});
    double first = std::max(a.first, low);
    double last = std::min(a.last, high);
    if (first > last + slack) {
        return std::nullopt;
    }
    if (last - first <= slack) {  // they meet end to end
        first = last = std::clamp(0.5 * (first + last), a.first, a.last);
    }
    const auto onB = [&](double t) { return std::clamp(mapping.onB(t), b.first, b.last); };
    return Contact{first, onB(first), last, onB(last)};
}

double distanceFrom(const LineForm& line, Vec2 point) {
    return std::abs(cross(line.direction, point - line.origin));
}

std::optional<std::vector<Contact>> linesOnOne(const Piece& a, const Piece& b) {
    const auto& lineA = std::get<LineForm>(a.form);
    const auto& lineB = std::get<LineForm>(b.form);
    const double sine = std::abs(cross(lineA.direction, lineB.direction));
    if (sine > kLargestAngle) {
        return std::nullopt;
    }
    const Mapping mapping{dot(lineB.origin - lineA.origin, lineA.direction),
                          dot(lineA.direction, lineB.direction) < 0.0 ? -1.0 : 1.0};
    const auto shared = sharedRange(a, b, mapping, kFrameTolerance);
    if (!shared) {
        return std::vector<Contact>{};
    }
    for (const double end : {shared->firstB, shared->lastB}) {
        const bool isOff = std::isfinite(end) ? distanceFrom(lineA, derivatives(b.form, end).point) > kFrameTolerance
                                              : sine > 1e-15 || distanceFrom(lineA, lineB.origin) > kFrameTolerance;
        if (isOff) {
            return std::nullopt;
        }
    }
    return std::vector{*shared};
}

bool isSameConic(const ConicForm& a, const ConicForm& b) {
    const bool sameSize = std::abs(norm(a.major) - norm(b.major)) <= kFrameTolerance &&
                          std::abs(norm(a.minor) - norm(b.minor)) <= kFrameTolerance;
    const double leaning = std::abs(cross(unit(a.major), unit(b.major))) * (norm(a.major) - norm(a.minor));
    return sameSize && distance(a.centre, b.centre) <= kFrameTolerance && leaning <= kFrameTolerance;
}

std::optional<std::vector<Contact>> conicsOnOne(const Piece& a, const Piece& b) {
    const auto& conicA = std::get<ConicForm>(a.form);
    const auto& conicB = std::get<ConicForm>(b.form);
    if (!isSameConic(conicA, conicB)) {
        return std::nullopt;
    }
    const double slack = kFrameTolerance / norm(conicA.major);
    Mapping mapping{std::atan2(dot(conicB.major, unit(conicA.minor)), dot(conicB.major, unit(conicA.major))),
                    conicA.isClockwise() == conicB.isClockwise() ? 1.0 : -1.0};
    const double low = std::min(mapping.onA(b.first), mapping.onA(b.last));
    mapping.shift -= std::ceil((low - a.first) / kTurn) * kTurn + kTurn;  // b starts in the turn before a
    std::vector<Contact> contacts;
    for (int turn = 0; turn < 4; ++turn, mapping.shift += kTurn) {
        if (const auto shared = sharedRange(a, b, mapping, slack)) {
            contacts.push_back(*shared);
        }
    }
    return contacts;
}

std::optional<std::vector<Contact>> splinesOnOne(const BezierForm& a, const BezierForm& b) {
    if (a.weights != b.weights || a.poles != b.poles) {
        return std::nullopt;
    }
    return std::vector{Contact{0.0, 0.0, 1.0, 1.0}};
}

}  // namespace

std::optional<std::vector<Contact>> sharedCarrierContacts(const Piece& a, const Piece& b) {
    if (a.form.index() != b.form.index()) {
        return std::nullopt;
    }
    if (std::holds_alternative<LineForm>(a.form)) {
        return linesOnOne(a, b);
    }
    if (std::holds_alternative<ConicForm>(a.form)) {
        return conicsOnOne(a, b);
    }
    return splinesOnOne(std::get<BezierForm>(a.form), std::get<BezierForm>(b.form));
}

}  // namespace holdfast::geometry
