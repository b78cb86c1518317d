#include "document/EndJoints.h"

#include <cassert>
#include <cmath>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "geometry/Angles.h"
#include "geometry/DisjointSets.h"
#include "geometry/Tolerances.h"

namespace holdfast::document {
namespace {

/// Entities that can become segments, by position.
std::vector<bool> segmentCandidates(const Document& document, const EntityIndex& entities) {
    std::vector<bool> candidates;
    for (const Entity& entity : document.entities) {
        const auto* arc = std::get_if<ArcShape>(&entity.shape);
        const bool isOpenArc = arc != nullptr && arc->endAngle - arc->startAngle < kTurn - kAlmostClosed;
        candidates.push_back(!entity.fixed && (isOpenArc || std::holds_alternative<LineShape>(entity.shape)));
    }
    for (const Constraint& constraint : document.constraints) {
        if (constraint.type == ConstraintType::internal)
            candidates[*entities.position(constraint.refs[0].entity)] = false;
    }
    return candidates;
}

std::unordered_set<std::string_view> ownedIds(const Document& document) {
    std::unordered_set<std::string_view> owned;
    for (const Constraint& constraint : document.constraints)
        owned.insert(constraint.members.begin(), constraint.members.end());
    return owned;
}

/// Places that coincidences of top level make one point.
class CoincidentPlaces {
public:
    explicit CoincidentPlaces(const Document& document) : m_sets(2 * document.constraints.size()) {
        const std::unordered_set<std::string_view> owned = ownedIds(document);
        for (const Constraint& constraint : document.constraints) {
            if (constraint.type != ConstraintType::coincident || !constraint.active || owned.contains(constraint.id))
                continue;
            m_sets.join(number(constraint.refs[0]), number(constraint.refs[1]));
        }
    }

    /// A number that all places of one point share; nothing for a place that no coincidence names.
    std::optional<std::size_t> pointOf(const Place& place) {
        const auto found = m_numbers.find(spokenPlace(place));
        return found == m_numbers.end() ? std::nullopt : std::optional<std::size_t>(m_sets.find(found->second));
    }

private:
    std::size_t number(const Place& place) {
        return m_numbers.emplace(spokenPlace(place), m_numbers.size()).first->second;
    }

    std::unordered_map<std::string, std::size_t> m_numbers;
    DisjointSets m_sets;
};

Place placeOf(const Document& document, EntityEnd end) {
    return {document.entities[end.entity].id, end.atStart ? PlaceKind::start : PlaceKind::end, 0};
}

bool canJoin(const Document& document, EntityEnd a, EntityEnd b, double tolerance) {
    const Entity &first = document.entities[a.entity], &second = document.entities[b.entity];
    if (a.entity == b.entity || first.construction != second.construction)
        return false;
    const std::optional<Vec2> p = pointAt(first.shape, placeOf(document, a));
    const std::optional<Vec2> q = pointAt(second.shape, placeOf(document, b));
    return std::hypot(q->x - p->x, q->y - p->y) <= tolerance;
}

}  // namespace

std::vector<std::size_t> jointsOf(const Document& document, double tolerance) {
    assert(tolerance >= 0.0);
    const EntityIndex entities(document);
    const std::vector<bool> candidates = segmentCandidates(document, entities);
    CoincidentPlaces places(document);
    std::unordered_map<std::size_t, std::vector<EntityEnd>> endsAt;  // by point
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        for (const bool atStart : {true, false}) {
            const EntityEnd end{i, atStart};
            const auto point = candidates[i] ? places.pointOf(placeOf(document, end)) : std::nullopt;
            if (point)
                endsAt[*point].push_back(end);
        }
    }
    std::vector<std::size_t> joints(2 * document.entities.size(), kNoEnd);
    for (const auto& [point, ends] : endsAt) {
        if (ends.size() != 2 || !canJoin(document, ends[0], ends[1], tolerance))
            continue;
        joints[numberOf(ends[0])] = numberOf(ends[1]);
        joints[numberOf(ends[1])] = numberOf(ends[0]);
    }
    return joints;
}

}  // namespace holdfast::document
