#include "editing/fates/DeletionReasons.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "document/DrawingChange.h"
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

/// A way that is too short for the digits of its ends is told by its length.
std::string moveInWords(const Place& place, Vec2 from, Vec2 to) {
    if (spoken(from) == spoken(to))
        return placeWords(place) + " moved by " + spoken(distance(from, to));
    return placeWords(place) + " moved from " + spoken(from) + " to " + spoken(to);
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
    return moveInWords(place, *from, *to);
}

/// What a line has lost that a constraint on the whole of it asks for; empty for what it still has.
std::string lossOf(const Constraint& constraint, const LineShape& was, const LineShape& is) {
    const double dx = std::abs(is.end.x - is.start.x), dy = std::abs(is.end.y - is.start.y),
                 length = std::hypot(dx, dy);
    if (constraint.type == ConstraintType::horizontal && dy > kSameDirection * length)
        return " is no longer horizontal";
    if (constraint.type == ConstraintType::vertical && dx > kSameDirection * length)
        return " is no longer vertical";
    if (constraint.type == ConstraintType::distance && constraint.refs.size() == 1 &&
        std::abs(length - distance(was.start, was.end)) > kSameDirection * length)
        return " is no longer as long";
    return {};
}

std::optional<double> radiusOf(const Shape& shape) {
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        return arc->radius;
    const auto* circle = std::get_if<CircleShape>(&shape);
    return circle == nullptr ? std::nullopt : std::optional(circle->radius);
}

/// What has changed of a curve that a constraint held on as a whole.
std::string changeOf(const Constraint& constraint, const Entity& was, const Entity& is) {
    const auto *lineWas = std::get_if<LineShape>(&was.shape), *lineIs = std::get_if<LineShape>(&is.shape);
    if (lineWas != nullptr && lineIs != nullptr)
        if (const std::string loss = lossOf(constraint, *lineWas, *lineIs); !loss.empty())
            return is.id + loss;
    const std::optional<double> radiusWas = radiusOf(was.shape), radiusIs = radiusOf(is.shape);
    if (radiusWas && radiusIs && spoken(*radiusWas) != spoken(*radiusIs))
        return "the radius of " + is.id + " changed from " + spoken(*radiusWas) + " to " + spoken(*radiusIs);
    if (lineIs != nullptr || radiusIs)
        for (const PlaceKind kind : {PlaceKind::centre, PlaceKind::start, PlaceKind::end}) {
            const Place place{is.id, kind};
            const std::optional<Vec2> from = pointAt(was.shape, place), to = pointAt(is.shape, place);
            if (from && to && distance(*from, *to) > 0.0)
                return moveInWords(place, *from, *to);
        }
    return is.id + " is no longer the curve that it was";
}

/// Of entities before and now.
template <class Entities>
std::string reasonOfDeletion(const Constraint& constraint, const Entities& before, const Entities& now,
                             LostVertices& lost) {
    for (const Place& place : constraint.refs)
        if (std::string reason = reasonAt(place, before.find(place.entity), now.find(place.entity), lost);
            !reason.empty())
            return reason;
    for (const Place& place : constraint.refs) {
        const Entity* was = before.find(place.entity);
        const Entity* is = now.find(place.entity);
        if (was == nullptr || is == nullptr || was->shape == is->shape)
            continue;
        return changeOf(constraint, *was, *is);
    }
    return "the edit took it away";
}

/// The changed entities, before the edit or as they are now. What did not change gives no reason.
class ChangedEntities {
public:
    using Side = std::optional<Entity> EntityChange::*;
    ChangedEntities(const DrawingChange& change, Side side) {
        for (const EntityChange& entity : change.entities)
            if (entity.*side)
                m_found.emplace((entity.*side)->id, &*(entity.*side));
    }
    const Entity* find(std::string_view name) const {
        const auto found = m_found.find(name);
        return found == m_found.end() ? nullptr : found->second;
    }

private:
    std::unordered_map<std::string_view, const Entity*> m_found;
};

}  // namespace

void DeletionReasons::noteDeleted(Drawing& drawing) {
    const DrawingChange change = drawing.change();
    const ChangedEntities before(change, &EntityChange::before), now(change, &EntityChange::after);
    LostVertices lost;
    for (const ConstraintChange& constraint : change.constraints)
        if (!constraint.after && !m_reasons.contains(constraint.before->id))
            note(constraint.before->id, reasonOfDeletion(*constraint.before, before, now, lost));
    for (const ConstraintChange& constraint : change.constraints)
        if (constraint.after)
            m_reasons.erase(constraint.after->id);
}

std::string DeletionReasons::reasonOf(const Constraint& constraint, const EntityIndex& before,
                                      const EntityIndex& after) {
    if (const auto noted = m_reasons.find(constraint.id); noted != m_reasons.end())
        return noted->second;
    return reasonOfDeletion(constraint, before, after, m_lost);
}

}  // namespace holdfast::editing
