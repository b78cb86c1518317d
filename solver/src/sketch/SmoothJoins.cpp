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

/// From its end into a line or an arc, of length 1.
Vec2 inwards(const SketchEntity& entity, bool isStart, std::span<const double> v) {
    const int first = entity.firstValue;
    const auto point = [&](int offset) { return Vec2{v[at(first + offset)], v[at(first + offset + 1)]}; };
    Vec2 way;
    if (entity.kind == EntityKind::line) {
        way = isStart ? point(2) - point(0) : point(0) - point(2);
    } else {
        const Vec2 ray = point(isStart ? 3 : 5) - point(0);
        way = isStart ? Vec2{-ray.y, ray.x} : Vec2{ray.y, -ray.x};
    }
    const double length = std::hypot(way.x, way.y);
    return length > 0.0 ? Vec2{way.x / length, way.y / length} : Vec2{};
}

bool isEnd(const SketchPlace& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}

}  // namespace

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
        const Join join{{a.entity, a.kind == PlaceKind::start}, {b.entity, b.kind == PlaceKind::start}};
        if (meeting(sketch, join, values) == Meeting::smooth)
            m_joins.push_back(join);
    }
}

std::optional<Degeneracy> SmoothJoins::findCusp(const SketchData& sketch, std::span<const double> now) const {
    for (const Join& join : m_joins)
        if (meeting(sketch, join, now) == Meeting::cusp) {
            const bool isArc = sketch.entities[at(join.a.entity)].kind == EntityKind::arc;
            const auto name = [&](const End& end) { return nameOf(sketch, {end.entity, PlaceKind::whole, 0}); };
            const End &arc = isArc ? join.a : join.b, &other = isArc ? join.b : join.a;
            return Degeneracy{arc.entity, -1, name(arc) + " would run back on " + name(other)};
        }
    return std::nullopt;
}

SmoothJoins::Meeting SmoothJoins::meeting(const SketchData& sketch, const Join& join, std::span<const double> values) {
    const Vec2 a = inwards(sketch.entities[at(join.a.entity)], join.a.isStart, values);
    const Vec2 b = inwards(sketch.entities[at(join.b.entity)], join.b.isStart, values);
    const double cosine = dot(a, b);
    if (std::abs(cross(a, b)) > kOneDirection || cosine == 0.0)
        return Meeting::corner;
    return cosine < 0.0 ? Meeting::smooth : Meeting::cusp;
}

}  // namespace holdfast::solver::detail
