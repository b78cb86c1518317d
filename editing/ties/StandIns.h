#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "editing/ties/CarriedPlaces.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Who stands where a place was that an edit has moved away: another end that constraints held in the same point, or
/// another curve that they held as long or as large. It carries on what the place was tied to. Of several always the
/// same one, so that what was tied through the place stays tied.
///
/// Only what lost its constraint with the place can stand in for it, as what kept it has moved along. Cost of making
/// it: linear in what was deleted; of a question: what hung together with the place.
class StandIns {
public:
    StandIns(const TieScene& scene, CarriedPlaces& places);

    /// For a point that is not where it was.
    std::optional<Place> forPoint(const Place& point);
    /// For a curve that has not the size that it had.
    std::optional<Place> forCurve(const Place& curve);

private:
    using Key = std::pair<std::string, std::pair<PlaceKind, int>>;
    /// Places and those that they were tied to, in the order of the deletions.
    using Neighbours = std::map<Key, std::vector<Place>>;

    static Key keyOf(const Place& place) { return {place.entity, {place.kind, place.index}}; }
    static void join(Neighbours& neighbours, const Place& a, const Place& b);
    template <class Stands>
    std::optional<Place> firstAround(const Neighbours& neighbours, const Place& from, const Stands& stands) const;

    const TieScene& m_scene;
    CarriedPlaces& m_places;
    Neighbours m_atOnePoint, m_ofOneSize;
};

}  // namespace holdfast::editing
