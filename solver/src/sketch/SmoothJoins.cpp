#include "solver/src/sketch/SmoothJoins.h"

#include <algorithm>
#include <cmath>

#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Sine of the angle up to which two directions are one: more than a solved sketch is off, and less than anybody draws
/// by eye.
constexpr double kOneDirection = 1e-5;

bool isEnd(const SketchPlace& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}

}  // namespace

/// From the end into its line or arc, of length 1.
Vec2 SmoothJoins::inwards(const SketchData& sketch, const End& end, std::span<const double> v) {
    const SketchEntity& entity = sketch.entities[at(end.entity)];
    const int first = entity.firstValue;
    const auto point = [&](int offset) { return Vec2{v[at(first + offset)], v[at(first + offset + 1)]}; };
    Vec2 way;
    if (entity.kind == EntityKind::line) {
        way = end.isStart ? point(2) - point(0) : point(0) - point(2);
    } else {
        const Vec2 ray = point(end.isStart ? 3 : 5) - point(0);
        way = end.isStart ? Vec2{-ray.y, ray.x} : Vec2{ray.y, -ray.x};
    }
    const double length = std::hypot(way.x, way.y);
    return length > 0.0 ? Vec2{way.x / length, way.y / length} : Vec2{};
}

SmoothJoins::SmoothJoins(const SketchData& sketch, std::span<const double> values, std::span<const int> without) {
    const auto canJoin = [&](const SketchPlace& place) {
        const EntityKind kind = sketch.entities[at(place.entity)].kind;
        return isEnd(place) && (kind == EntityKind::line || kind == EntityKind::arc) &&
               !std::binary_search(without.begin(), without.end(), place.entity);
    };
    for (const SketchConstraint& constraint : sketch.constraints) {
        if (!constraint.binds() || constraint.type != ConstraintType::coincident || constraint.refs.size() != 2)
            continue;
        const SketchPlace &a = constraint.refs[0], &b = constraint.refs[1];
        if (!canJoin(a) || !canJoin(b) || a.entity == b.entity ||
            (sketch.entities[at(a.entity)].kind == EntityKind::line &&
             sketch.entities[at(b.entity)].kind == EntityKind::line))
            continue;
        Join join{{a.entity, a.kind == PlaceKind::start}, {b.entity, b.kind == PlaceKind::start}};
        join.wasA = inwards(sketch, join.a, values);
        join.wasB = inwards(sketch, join.b, values);
        if (meetingOf(join.wasA, join.wasB) == Meeting::smooth)
            m_joins.push_back(join);
    }
}

std::optional<Degeneracy> SmoothJoins::findCusp(const SketchData& sketch, std::span<const double> now) const {
    for (const Join& join : m_joins) {
        const Vec2 a = inwards(sketch, join.a, now), b = inwards(sketch, join.b, now);
        if (meetingOf(a, b) != Meeting::cusp)
            continue;
        const auto name = [&](const End& end) { return nameOf(sketch, {end.entity, PlaceKind::whole, 0}); };
        const bool isFirst = dot(a, join.wasA) < dot(b, join.wasB);
        const End &turned = isFirst ? join.a : join.b, &other = isFirst ? join.b : join.a;
        return Degeneracy{turned.entity, -1, name(turned) + " would run back on " + name(other)};
    }
    return std::nullopt;
}

SmoothJoins::Meeting SmoothJoins::meetingOf(Vec2 a, Vec2 b) {
    const double cosine = dot(a, b);
    if (std::abs(cross(a, b)) > kOneDirection || cosine == 0.0)
        return Meeting::corner;
    return cosine < 0.0 ? Meeting::smooth : Meeting::cusp;
}

}  // namespace holdfast::solver::detail
