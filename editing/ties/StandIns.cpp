#include "editing/ties/StandIns.h"

#include <algorithm>
#include <set>

#include "editing/ties/EndPlaces.h"

namespace holdfast::editing {

StandIns::StandIns(const TieScene& scene, CarriedPlaces& places) : m_scene(scene), m_places(places) {
    for (const Deletion& deletion : scene.drawing().deletions()) {
        const Constraint& was = deletion.constraint;
        if (!was.active || !was.driving || was.implied || was.refs.size() != 2)
            continue;
        // Two ends that are tangent are in one point, too.
        const bool joinsPoints = was.type == ConstraintType::coincident || was.type == ConstraintType::tangent;
        if (joinsPoints && scene.pointBefore(was.refs[0]) && scene.pointBefore(was.refs[1]))
            join(m_atOnePoint, was.refs[0], was.refs[1]);
        else if (was.type == ConstraintType::equal)
            join(m_ofOneSize, was.refs[0], was.refs[1]);
    }
}

void StandIns::join(Neighbours& neighbours, const Place& a, const Place& b) {
    neighbours[keyOf(a)].push_back(b);
    neighbours[keyOf(b)].push_back(a);
}

template <class Stands>
std::optional<Place> StandIns::firstAround(const Neighbours& neighbours, const Place& from,
                                           const Stands& stands) const {
    std::set<Key> seen{keyOf(from)};
    std::vector<Place> queue{from};
    for (std::size_t next = 0; next < queue.size(); ++next) {
        const auto found = neighbours.find(keyOf(queue[next]));
        if (found == neighbours.end())
            continue;
        for (const Place& place : found->second) {
            if (!seen.insert(keyOf(place)).second)
                continue;
            if (std::optional<Place> there = stands(place))
                return there;
            queue.push_back(place);
        }
    }
    return {};
}

std::optional<Place> StandIns::forPoint(const Place& point) {
    return firstAround(m_atOnePoint, point, [&](const Place& place) { return m_places.unmoved(place); });
}

std::optional<Place> StandIns::forCurve(const Place& curve) {
    return firstAround(m_ofOneSize, curve, [&](const Place& place) -> std::optional<Place> {
        return m_scene.isUnchanged(place.entity) ? std::optional(place) : std::nullopt;
    });
}

}  // namespace holdfast::editing
