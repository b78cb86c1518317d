#include "editing/ties/PieceTies.h"

#include <cmath>

#include "document/Places.h"
#include "editing/ties/EndPlaces.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

bool isArcOrCircle(const Shape& shape) {
    return std::holds_alternative<ArcShape>(shape) || std::holds_alternative<CircleShape>(shape);
}

bool isElliptic(const Shape& shape) {
    return std::holds_alternative<EllipticalArcShape>(shape) || std::holds_alternative<EllipseShape>(shape);
}

/// The two sides of a cut: the curves there, which are segments of polylines, and their ends.
struct Sides {
    Place firstCurve, secondCurve;
    Place firstEnd, secondEnd;
};

Place curveAtEnd(const Place& end) {
    return {end.entity, isSegmentPlace(end) ? PlaceKind::segment : PlaceKind::whole, end.index};
}

Place centreOf(const Place& curve) {
    return {curve.entity, isSegmentPlace(curve) ? PlaceKind::segmentCentre : PlaceKind::centre, curve.index};
}

/// Of two rays that were one line each has its base at the cut.
Place endAtCut(const std::string& name, const Shape& shape, bool isFirst) {
    const std::vector<Place> ends = endsOf(name, shape);
    return isFirst ? ends.back() : ends.front();
}

std::optional<Sides> sidesOf(const TieScene& scene, const std::string& curve) {
    const std::vector<std::string> pieces = scene.piecesOf(curve);
    if (pieces.empty() || pieces.size() > 2)
        return {};
    const Shape *was = scene.before(curve), *first = scene.now(pieces.front()), *second = scene.now(pieces.back());
    // One piece has two sides where a ring was opened.
    const auto* ring = was == nullptr ? nullptr : std::get_if<PolylineShape>(was);
    if (pieces.size() == 1 && (ring == nullptr || !ring->closed))
        return {};
    if (endsOf(pieces.front(), *first).empty() || endsOf(pieces.back(), *second).empty())
        return {};
    const Place firstEnd = endAtCut(pieces.front(), *first, true);
    const Place secondEnd = endAtCut(pieces.back(), *second, false);
    if (firstEnd == secondEnd)
        return {};
    return Sides{curveAtEnd(firstEnd), curveAtEnd(secondEnd), firstEnd, secondEnd};
}

double paramOfMiddle(const Shape& whole, const Shape& part) {
    const ParamRange range = paramRange(part);
    return nearestOn(whole, pointAt(part, 0.5 * (range.first + range.last))).param;
}

/// Segments at the cut that were one segment before.
bool wereOne(const Shape& was, const Shape& first, const Shape& second) {
    if (!std::holds_alternative<PolylineShape>(was))
        return true;
    return std::floor(paramOfMiddle(was, first)) == std::floor(paramOfMiddle(was, second));
}

void tieInLine(const Sides& sides, const Shape& first, bool touch, const std::string& curve, std::vector<Tie>& ties) {
    const std::string pieces = "the pieces of " + curve;
    const std::vector<Place> curves{sides.firstCurve, sides.secondCurve};
    if (isStraight(first)) {
        // Lines that share a point are in line when they are parallel.
        ties.push_back(
            tieOf(touch ? ConstraintType::parallel : ConstraintType::collinear, curves, pieces + " stay in one line"));
    } else if (isArcOrCircle(first) || isElliptic(first)) {
        const std::string stay = pieces + (isArcOrCircle(first) ? " stay on one circle" : " stay on one ellipse");
        ties.push_back(
            tieOf(ConstraintType::concentric, {centreOf(sides.firstCurve), centreOf(sides.secondCurve)}, stay));
        // A common centre and a common point make circles equal.
        if (!touch || isElliptic(first))
            ties.push_back(tieOf(ConstraintType::equal, curves, stay));
    } else if (touch && std::holds_alternative<SplineShape>(first)) {
        ties.push_back(tieOf(ConstraintType::tangent, {sides.firstEnd, sides.secondEnd},
                             "the pieces of " + curve + " run smoothly into each other"));
    }
}

}  // namespace

void tiePieces(const TieScene& scene, const std::string& curve, std::vector<Tie>& ties) {
    const std::optional<Sides> sides = sidesOf(scene, curve);
    if (!sides)
        return;
    const Shape &firstShape = *scene.now(sides->firstEnd.entity), &secondShape = *scene.now(sides->secondEnd.entity);
    const bool touch = scene.isSame(*pointAt(firstShape, sides->firstEnd), *pointAt(secondShape, sides->secondEnd));
    if (touch)
        ties.push_back(tieOf(ConstraintType::coincident, {sides->firstEnd, sides->secondEnd},
                             "the pieces of " + curve + " meet there"));
    const Shape first = curveOf(firstShape, sides->firstCurve), second = curveOf(secondShape, sides->secondCurve);
    if (first.index() == second.index() || (isStraight(first) && isStraight(second)))
        if (wereOne(*scene.before(curve), first, second))
            tieInLine(*sides, first, touch, curve, ties);
}

}  // namespace holdfast::editing
