#include "editing/ties/BoundaryTies.h"

#include <algorithm>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/ties/EndPlaces.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

std::vector<Place> newEndsOf(const TieScene& scene, const std::string& curve) {
    const Shape* was = scene.before(curve);
    if (was == nullptr)
        return {};
    std::vector<Vec2> former;
    for (const Place& end : endsOf(curve, *was))
        former.push_back(*pointAt(*was, end));
    std::vector<Place> found;
    for (const std::string& piece : scene.piecesOf(curve))
        for (const Place& end : endsOf(piece, *scene.now(piece))) {
            const Vec2 at = *pointAt(*scene.now(piece), end);
            if (std::none_of(former.begin(), former.end(), [&](Vec2 point) { return scene.isSame(point, at); }))
                found.push_back(end);
        }
    return found;
}

void tieToBoundaries(const TieScene& scene, const std::string& curve, const std::vector<Name>& boundaries,
                     std::vector<Tie>& ties) {
    const auto firstAmong = [&](Vec2 at, const auto& placeOn) -> std::optional<Place> {
        for (const Name& boundary : boundaries)
            if (const Shape* shape = scene.now(boundary.value))
                if (std::optional<Place> place = placeOn(boundary.value, *shape, at, scene.near()))
                    return place;
        return {};
    };
    for (const Place& end : newEndsOf(scene, curve)) {
        const Vec2 at = *pointAt(*scene.now(end.entity), end);
        const std::string isNew = "the new end of " + end.entity;
        if (const std::optional<Place> met = firstAmong(at, endAt))
            ties.push_back(tieOf(ConstraintType::coincident, {end, *met}, isNew + " meets " + spokenEnd(*met)));
        else if (const std::optional<Place> on = firstAmong(at, curveAt))
            ties.push_back(tieOf(ConstraintType::pointOnCurve, {end, *on}, isNew + " lies on " + spokenPlace(*on)));
    }
}

}  // namespace holdfast::editing
