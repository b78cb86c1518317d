#include "solver/src/sketch/Corners.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Sine of the angle at a corner below which it is straight: drawn by eye, a few degrees turn to no side.
constexpr double kStraight = 0.05;

}  // namespace

Corners::Corners(const SketchData& sketch) {
    const auto leg = [&](const SketchPlace& place) -> Leg {
        const SketchEntity& entity = sketch.entities[at(place.entity)];
        if (entity.kind != EntityKind::line || (place.kind != PlaceKind::start && place.kind != PlaceKind::end))
            return {-1, -1, -1};
        const int start = entity.firstValue, end = entity.firstValue + 2;
        return place.kind == PlaceKind::start ? Leg{start, end, place.entity} : Leg{end, start, place.entity};
    };
    for (const SketchConstraint& constraint : sketch.constraints) {
        if (!constraint.binds() || constraint.type != ConstraintType::coincident || constraint.refs.size() != 2)
            continue;
        const Leg a = leg(constraint.refs[0]), b = leg(constraint.refs[1]);
        if (a.entity >= 0 && b.entity >= 0)
            m_corners.emplace_back(a, b);
    }
    for (int i = 0; i < static_cast<int>(sketch.entities.size()); ++i) {
        const SketchEntity& entity = sketch.entities[at(i)];
        if (entity.kind != EntityKind::polyline)
            continue;
        const auto isStraight = [&](int segment) { return entity.bulgeValues[at(segment)] < 0; };
        for (int s = 0; s + 1 < entity.segmentCount(); ++s) {
            if (!isStraight(s) || !isStraight(s + 1))
                continue;
            const int corner = sketch.vertexValue(i, s + 1);
            m_corners.emplace_back(Leg{corner, sketch.vertexValue(i, s), i},
                                   Leg{corner, sketch.vertexValue(i, s + 2), i});
        }
    }
}

/// Sine of the angle between the legs.
double Corners::turn(const Leg& a, const Leg& b, std::span<const double> v) {
    const Vec2 u{v[at(a.far)] - v[at(a.corner)], v[at(a.far + 1)] - v[at(a.corner + 1)]};
    const Vec2 w{v[at(b.far)] - v[at(b.corner)], v[at(b.far + 1)] - v[at(b.corner + 1)]};
    const double lengths = std::hypot(u.x, u.y) * std::hypot(w.x, w.y);
    return lengths > 0.0 ? (u.x * w.y - u.y * w.x) / lengths : 0.0;
}

std::vector<int> Corners::turnedOver(std::span<const double> before, std::span<const double> now) const {
    std::vector<int> over;
    for (const auto& [a, b] : m_corners) {
        const double was = turn(a, b, before), is = turn(a, b, now);
        if (std::min(std::abs(was), std::abs(is)) <= kStraight || was * is > 0.0)
            continue;
        over.push_back(a.entity);
        over.push_back(b.entity);
    }
    std::sort(over.begin(), over.end());
    over.erase(std::unique(over.begin(), over.end()), over.end());
    return over;
}

}  // namespace holdfast::solver::detail
