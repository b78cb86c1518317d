#include "editing/define/DatumSearch.h"

#include <cmath>
#include <cstddef>
#include <tuple>

#include "document/Places.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

/// How well a point serves as a datum: reference geometry first, of that and of the rest the origin first, then
/// what was drawn as a point, and then from the lower left on.
struct Rank {
    bool isForeign = true, isElsewhere = true, isPart = true;
    double position = 0.0;

    bool isBefore(const Rank& other, double same) const {
        const auto kind = std::tie(isForeign, isElsewhere, isPart);
        const auto otherKind = std::tie(other.isForeign, other.isElsewhere, other.isPart);
        return kind == otherKind ? position < other.position - same : kind < otherKind;
    }
};

struct Best {
    std::optional<Place> place{};
    Rank rank{};

    void take(const Place& other, const Rank& its, double same) {
        if (place && !its.isBefore(rank, same))
            return;
        place = other;
        rank = its;
    }
};

Rank rankOf(const Entity& entity, Vec2 point, double same) {
    return {!entity.fixed, std::hypot(point.x, point.y) > same,
            !(entity.fixed && std::holds_alternative<PointShape>(entity.shape)), point.x + point.y};
}

}  // namespace

std::optional<Datum> datumIn(const Document& document, ConstraintRanks& ranks, const std::vector<bool>& isAlone,
                             const std::vector<bool>& mayMove, double same) {
    Best held, heldInX, heldInY, free, sliding;
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        const Entity& entity = document.entities[i];
        for (const Place& place : pointsOf(entity)) {
            const auto point = pointAt(entity.shape, place);
            const int freedom = point && !isAlone[i] ? ranks.freedomOf(place) : -1;
            if (freedom < 0 || (freedom > 0 && !mayMove[i]))
                continue;
            const Rank rank = rankOf(entity, *point, same);
            (freedom == 0 ? held : freedom == 1 ? sliding : free).take(place, rank, same);
            if (freedom == 1 && ranks.isDetermined(place, 0))
                heldInX.take(place, rank, same);
            if (freedom == 1 && ranks.isDetermined(place, 1))
                heldInY.take(place, rank, same);
        }
    }
    if (held.place)
        return Datum{*held.place, *held.place};
    if (heldInX.place && heldInY.place)
        return Datum{*heldInX.place, *heldInY.place};
    if (free.place)
        return Datum{*free.place, *free.place, free.place};
    if (!sliding.place)
        return std::nullopt;
    return Datum{heldInX.place.value_or(*sliding.place), heldInY.place.value_or(*sliding.place), sliding.place, true};
}

}  // namespace holdfast::editing
