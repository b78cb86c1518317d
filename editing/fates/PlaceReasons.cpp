#include "editing/fates/PlaceReasons.h"

#include <algorithm>
#include <optional>

#include <yxbase/YxGePoint3d.h>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/EditContext.h"
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

bool namesSegment(const Place& place) {
    return place.kind >= PlaceKind::segment;
}

/// As the module compares points.
bool isOnePoint(Vec2 a, Vec2 b) {
    return YxGePoint3d(a.x, a.y, 0.0).isEqualTo({b.x, b.y, 0.0});
}

/// "the end of base moved from (10, 0) to (4, 0)"; empty for a place that is no point of both, or did not move.
std::string wayOf(const Place& place, const Shape& was, const Shape& is) {
    const std::optional<Vec2> from = pointAt(was, place), to = pointAt(is, place);
    if (!from || !to || isOnePoint(*from, *to))
        return {};
    // A way that is too short for the digits of its ends is told by its length.
    if (spoken(*from) == spoken(*to))
        return placeWords(place) + " moved by " + spoken(distance(*from, *to));
    return placeWords(place) + " moved from " + spoken(*from) + " to " + spoken(*to);
}

bool isCountedAnew(const PolylineShape& was, const PolylineShape& is) {
    return was.vertices.size() != is.vertices.size() || was.closed != is.closed;
}

std::string becoming(const Entity& was, const Entity& is) {
    return was.id + " was " + kindInWords(was.shape) + " and became " + kindInWords(is.shape) +
           (was.id == is.id ? "" : ", " + is.id);
}

/// Everything on a spline goes that has another number of control points.
std::string recounted(const Entity& was, const Entity& is) {
    const auto *before = std::get_if<SplineShape>(&was.shape), *now = std::get_if<SplineShape>(&is.shape);
    if (before == nullptr || now == nullptr || before->control.size() == now->control.size())
        return {};
    return was.id + " had " + std::to_string(before->control.size()) + " control points and has " +
           std::to_string(now->control.size());
}

/// A whole line goes with the length that it had, where that is equal to another one's; a ray is told by its base
/// point.
std::string wholeChanged(const Constraint& constraint, const Entity& was, const Entity& is) {
    if (constraint.type != ConstraintType::equal)
        return {};
    for (const PlaceKind kind : {PlaceKind::start, PlaceKind::end})
        if (std::string way = wayOf({is.id, kind}, was.shape, is.shape); !way.empty())
            return way;
    return {};
}

}  // namespace

PlaceReasons::PlaceReasons(const DrawingChange& change, const EditedCurves& edited) : m_edited(edited) {
    for (const EntityChange& entity : change.entities) {
        if (entity.before)
            m_before.emplace(entity.before->id, &*entity.before);
        if (entity.after)
            m_now.emplace(entity.after->id, &*entity.after);
    }
}

const Entity* PlaceReasons::before(const std::string& name) const {
    const auto found = m_before.find(name);
    return found == m_before.end() ? nullptr : found->second;
}

std::vector<const Entity*> PlaceReasons::leftOf(const std::string& name) const {
    const auto edited = m_edited.find(name);
    std::vector<const Entity*> left;
    for (const std::string& piece : edited == m_edited.end() ? std::vector{name} : edited->second.left)
        if (const auto found = m_now.find(piece); found != m_now.end())
            left.push_back(found->second);
    return left;
}

std::string PlaceReasons::onSegment(const Constraint& constraint, const Place& place, const PolylineShape& was,
                                    const std::vector<const Entity*>& left) {
    std::vector<const PolylineShape*> pieces;
    for (const Entity* piece : left)
        if (const auto* polyline = std::get_if<PolylineShape>(&piece->shape))
            pieces.push_back(polyline);
    const bool isEnd = place.kind == PlaceKind::segmentStart || place.kind == PlaceKind::segmentEnd;
    if (isEnd && pieces.size() == 1 && !isCountedAnew(was, *pieces.front()))
        if (std::string way = wayOf(place, was, *pieces.front()); !way.empty())
            return way;
    return m_lost.reasonAt(place, was, pieces, constraint.type == ConstraintType::equal);
}

std::string PlaceReasons::decidingAt(const Constraint& constraint, const Place& place) {
    const Entity* was = before(place.entity);
    if (was == nullptr)
        return {};
    const std::vector<const Entity*> left = leftOf(place.entity);
    if (left.empty())
        return place.entity + " was erased";
    if (const auto* polyline = std::get_if<PolylineShape>(&was->shape); polyline != nullptr && namesSegment(place))
        return onSegment(constraint, place, *polyline, left);
    const Entity& is = *left.front();
    if (was->shape.index() != is.shape.index())
        return becoming(*was, is);
    if (std::string text = recounted(*was, is); !text.empty())
        return text;
    if (place.kind == PlaceKind::whole && !pointAt(was->shape, place))
        return wholeChanged(constraint, *was, is);
    return wayOf(place, was->shape, is.shape);
}

std::string PlaceReasons::deciding(const Constraint& constraint) {
    for (const Place& place : constraint.refs)
        if (std::string reason = decidingAt(constraint, place); !reason.empty())
            return reason;
    return {};
}

std::string PlaceReasons::doneTo(const Constraint& constraint, bool atOnce) const {
    for (const Place& place : constraint.refs) {
        const auto edited = m_edited.find(place.entity);
        if (edited == m_edited.end())
            continue;
        const std::string done = place.entity + " was " + edited->second.done;
        if (place.kind == PlaceKind::mid || place.kind == PlaceKind::segmentMid)
            return done + ", and has another middle";
        const Entity* was = atOnce ? before(place.entity) : nullptr;
        const std::optional<Vec2> point = was == nullptr ? std::nullopt : pointAt(was->shape, place);
        return point ? done + " at " + spoken(*point) : done;
    }
    return "the edit took it away";
}

std::string PlaceReasons::lost(const Place& place) {
    const Entity* was = before(place.entity);
    if (was != nullptr && leftOf(place.entity).empty())
        return place.entity + " was erased";
    const auto* polyline = was == nullptr ? nullptr : std::get_if<PolylineShape>(&was->shape);
    if (polyline != nullptr && namesSegment(place))
        if (std::string reason = onSegment({}, place, *polyline, leftOf(place.entity)); !reason.empty())
            return reason;
    return spokenPlace({place.entity, namesSegment(place) ? PlaceKind::segment : place.kind, place.index}) +
           " was cut away";
}

}  // namespace holdfast::editing
