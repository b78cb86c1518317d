#include "editing/fates/DeletionReasons.h"

#include <algorithm>
#include <cmath>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/EditContext.h"
#include "editing/LostVertices.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

std::string placeWords(const Place& place) {
    switch (place.kind) {
        case PlaceKind::start:
            return "the start of " + place.entity;
        case PlaceKind::end:
            return "the end of " + place.entity;
        case PlaceKind::centre:
            return "the centre of " + place.entity;
        case PlaceKind::mid:
            return "the middle of " + place.entity;
        default:
            return spokenPlace(place);
    }
}

/// "a construction line", "an elliptical arc"
std::string kindInWords(const Shape& shape) {
    std::string noun(std::holds_alternative<XlineShape>(shape) ? "construction line" : typeName(shape));
    std::replace(noun.begin(), noun.end(), '_', ' ');
    return (std::string_view("aeiou").find(noun.front()) == std::string_view::npos ? "a " : "an ") + noun;
}

bool namesPolylinePlace(const Place& place) {
    return place.kind >= PlaceKind::segment;
}

bool isCountedAnew(const PolylineShape& was, const PolylineShape& is) {
    return was.vertices.size() != is.vertices.size() || was.closed != is.closed;
}

/// Why a constraint that held at a place was lost, as far as that place tells; empty when it tells nothing.
std::string reasonAt(const Place& place, const Entity* was, const Entity* is, LostVertices& lost) {
    if (was == nullptr)
        return {};
    if (is == nullptr)
        return place.entity + " was erased";
    if (was->shape.index() != is->shape.index())
        return place.entity + " was " + kindInWords(was->shape) + " and became " + kindInWords(is->shape);
    const auto *polylineWas = std::get_if<PolylineShape>(&was->shape),
               *polylineIs = std::get_if<PolylineShape>(&is->shape);
    const bool isEnd = place.kind == PlaceKind::segmentStart || place.kind == PlaceKind::segmentEnd;
    if (polylineWas != nullptr && polylineIs != nullptr && namesPolylinePlace(place) &&
        (!isEnd || isCountedAnew(*polylineWas, *polylineIs)))
        return lost.reasonAt(place, *polylineWas, *polylineIs);
    if (namesPolylinePlace(place) && !hasPlace(is->shape, place))
        return spokenPlace(place) + " was cut away";
    const std::optional<Vec2> from = pointAt(was->shape, place), to = pointAt(is->shape, place);
    if (!from || !to || distance(*from, *to) == 0.0)
        return {};
    return placeWords(place) + " moved from " + spoken(*from) + " to " + spoken(*to);
}

/// What a line has lost that a constraint on the whole of it asks for; empty for what it still has.
std::string lossOf(const Constraint& constraint, const LineShape& is) {
    const double dx = std::abs(is.end.x - is.start.x), dy = std::abs(is.end.y - is.start.y),
                 length = std::hypot(dx, dy);
    if (constraint.type == ConstraintType::horizontal && dy > kSameDirection * length)
        return " is no longer horizontal";
    if (constraint.type == ConstraintType::vertical && dx > kSameDirection * length)
        return " is no longer vertical";
    if (constraint.type == ConstraintType::distance && constraint.refs.size() == 1)
        return " is no longer as long";
    return {};
}

/// `find` gives an entity as it is now, or null. What it gives has to stay.
template <class Find>
std::string reasonOfDeletion(const Constraint& constraint, const EntityIndex& before, const Find& find,
                             LostVertices& lost) {
    for (const Place& place : constraint.refs)
        if (std::string reason = reasonAt(place, before.find(place.entity), find(place.entity), lost); !reason.empty())
            return reason;
    for (const Place& place : constraint.refs) {
        const Entity* was = before.find(place.entity);
        const Entity* is = find(place.entity);
        if (was == nullptr || is == nullptr || was->shape == is->shape)
            continue;
        const auto* line = std::get_if<LineShape>(&is->shape);
        const std::string loss = line == nullptr ? std::string() : lossOf(constraint, *line);
        return place.entity + (loss.empty() ? " is no longer the curve that it was" : loss);
    }
    return "an edited end no longer supports it";
}

/// Entities as the host holds them, each read once.
class Residents {
public:
    explicit Residents(const Drawing& drawing) : m_drawing(drawing) {}

    const Entity* operator()(const std::string& name) const {
        const auto [known, isNew] = m_read.try_emplace(name);
        if (isNew && !m_drawing.id(name).isNull())
            known->second = Entity{.id = name, .shape = m_drawing.shape(name)};
        return known->second ? &*known->second : nullptr;
    }

private:
    const Drawing& m_drawing;
    mutable std::unordered_map<std::string, std::optional<Entity>> m_read;
};

}  // namespace

void DeletionReasons::noteDeleted(const Drawing& drawing) {
    const std::size_t count = HostAccess::constraints(drawing.group()).size();
    if (count == m_count)
        return;
    m_count = count;
    const Residents now(drawing);
    LostVertices lost;
    for (const Constraint& constraint : m_before.constraints)
        if (drawing.hasConstraint(constraint.id))
            m_reasons.erase(constraint.id);
        else if (!m_reasons.contains(constraint.id))
            note(constraint.id, reasonOfDeletion(constraint, entitiesBefore(), now, lost));
}

std::string DeletionReasons::reasonOf(const Constraint& constraint, const EntityIndex& after) {
    if (const auto noted = m_reasons.find(constraint.id); noted != m_reasons.end())
        return noted->second;
    const auto now = [&](const std::string& name) { return after.find(name); };
    return reasonOfDeletion(constraint, entitiesBefore(), now, m_lost);
}

const EntityIndex& DeletionReasons::entitiesBefore() {
    if (!m_entities)
        m_entities.emplace(m_before);
    return *m_entities;
}

}  // namespace holdfast::editing
