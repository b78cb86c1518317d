// Extends every open end of every real drawing and fillets its corners.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "document/EntityIndex.h"
#include "geometry/curves/Geometry.h"
#include "tests/editing/RealDrawings.h"

namespace holdfast::editing {
namespace {

bool hasEnd(const Shape& shape, CurveEnd end) {
    return periodOf(shape) == 0.0 && (end == CurveEnd::start ? startPoint(shape) : endPoint(shape)).has_value();
}

/// Up to two entities that lie ahead of an end.
std::string boundariesOf(const Document& document, const Entity& entity, CurveEnd end) {
    std::string boundaries;
    int count = 0;
    for (const Entity& other : document.entities)
        if (count < 2 && &other != &entity && isCurve(other.shape) && extensionTo(entity.shape, end, other.shape)) {
            boundaries += " " + other.id;
            ++count;
        }
    return boundaries;
}

std::vector<RealEdit> extensionsOf(const Document& document) {
    std::vector<RealEdit> edits;
    for (const Entity& entity : document.entities)
        for (const CurveEnd end : {CurveEnd::start, CurveEnd::end}) {
            if (!isOpenToEdits(entity) || !hasEnd(entity.shape, end))
                continue;
            if (const std::string boundaries = boundariesOf(document, entity, end); !boundaries.empty())
                edits.push_back(
                    {"extend " + entity.id + (end == CurveEnd::start ? " start to" : " end to") + boundaries,
                     {entity.id}});
        }
    return edits;
}

bool isEnd(const Place& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}

/// The two curves of which a coincidence ties ends together; none when a fillet may not change them.
std::optional<std::pair<const Entity*, const Entity*>> cornerOf(const EntityIndex& entities,
                                                                const Constraint& constraint) {
    if (constraint.type != ConstraintType::coincident || constraint.refs.size() != 2 || !isEnd(constraint.refs[0]) ||
        !isEnd(constraint.refs[1]) || constraint.refs[0].entity == constraint.refs[1].entity)
        return std::nullopt;
    const Entity* a = entities.find(constraint.refs[0].entity);
    const Entity* b = entities.find(constraint.refs[1].entity);
    if (!isOpenToEdits(*a) || !isOpenToEdits(*b))
        return std::nullopt;
    return std::pair(a, b);
}

std::string filletOf(const Entity& a, const Entity& b, double radius) {
    return "fillet " + a.id + " " + b.id + " radius " + numberWord(radius);
}

/// Every corner with a radius that leaves most of its sides.
std::vector<RealEdit> cornerFilletsOf(const Document& document) {
    const EntityIndex entities(document);
    std::vector<RealEdit> edits;
    for (const Constraint& constraint : document.constraints)
        if (const auto corner = cornerOf(entities, constraint)) {
            const auto& [a, b] = *corner;
            const double radius = 0.1 * std::min(boundsOf(a->shape).diagonal(), boundsOf(b->shape).diagonal());
            if (radius > 0.0 && std::isfinite(radius))
                edits.push_back({filletOf(*a, *b, radius), {a->id, b->id}});
        }
    return edits;
}

/// Each entity with the one drawn after it, in a sharp corner.
std::vector<RealEdit> sharpCornersOf(const Document& document) {
    std::vector<RealEdit> edits;
    for (std::size_t i = 0; i + 1 < document.entities.size(); ++i) {
        const Entity &a = document.entities[i], &b = document.entities[i + 1];
        if (isOpenToEdits(a) && isOpenToEdits(b))
            edits.push_back({filletOf(a, b, 0.0), {a.id, b.id}});
    }
    return edits;
}

TEST(RealDrawings, StaySoundWhenEveryEndIsExtended) {
    checkEdits(&extensionsOf, 20);
}

TEST(RealDrawings, StaySoundWhenEveryCornerIsRounded) {
    checkEdits(&cornerFilletsOf, 20);
}

TEST(RealDrawings, StaySoundWhenNeighboursAreLedToTheirCorner) {
    checkEdits(&sharpCornersOf, 20);
}

}  // namespace
}  // namespace holdfast::editing
