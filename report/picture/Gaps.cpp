#include "report/picture/Gaps.h"

#include <limits>
#include <optional>
#include <vector>

#include "report/picture/PlacePoint.h"
#include "report/picture/Plane2.h"

namespace holdfast::report {

namespace {

std::optional<Vec2> roundCentre(const Shape& curve) {
    if (const auto* circle = std::get_if<CircleShape>(&curve))
        return circle->centre;
    if (const auto* arc = std::get_if<ArcShape>(&curve))
        return arc->centre;
    return std::nullopt;
}

/// The nearest points of a curve and of a circle or arc: on the way through the centre, on the nearer side.
Gap gapToRound(const Shape& curve, const Shape& round, Vec2 centre) {
    std::vector<Vec2> candidates{nearestOn(curve, centre)};
    if (const std::optional<Vec2> own = roundCentre(curve))
        candidates.push_back(*own * 2.0 - candidates.front());
    Gap best;
    double least = std::numeric_limits<double>::infinity();
    for (const Vec2& from : candidates)
        if (const Vec2 to = nearestOn(round, from); distance(from, to) < least) {
            least = distance(from, to);
            best = {from, to};
        }
    return best;
}

/// The nearest points of two curves, by going back and forth between them.
Gap gapBetweenCurves(const Shape& first, const Shape& second) {
    Vec2 from = spotOf(first, {}).point, to = nearestOn(second, from);
    for (int round = 0; round < 8; ++round) {
        from = nearestOn(first, to);
        to = nearestOn(second, from);
    }
    return {from, to};
}

}  // namespace

Gap gapBetween(const Shape& first, const Shape& second) {
    if (const std::optional<Vec2> centre = roundCentre(second))
        return gapToRound(first, second, *centre);
    if (const std::optional<Vec2> centre = roundCentre(first)) {
        const Gap gap = gapToRound(second, first, *centre);
        return {gap.to, gap.from};
    }
    if (isStraight(first) && isStraight(second)) {
        const Vec2 middle = spotOf(second, {}).point;
        return {nearestOn(first, middle), middle};
    }
    return gapBetweenCurves(first, second);
}

}  // namespace holdfast::report
