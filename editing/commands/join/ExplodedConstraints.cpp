#include "editing/commands/join/ExplodedConstraints.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/commands/join/JoinedConstraints.h"
#include "editing/constraints/HoldingConstraints.h"
#include "editing/constraints/NewConstraints.h"
#include "geometry/SegmentDirections.h"
#include "geometry/Tolerances.h"

namespace holdfast::editing {

namespace {

PlaceKind onPiece(PlaceKind kind) {
    using enum PlaceKind;
    switch (kind) {
        case segmentStart:
            return start;
        case segmentEnd:
            return end;
        case segmentMid:
            return mid;
        case segmentCentre:
            return centre;
        default:
            return whole;
    }
}

/// An end of a piece by the end of its segment in the direction of the polyline.
Place endOfPiece(const ExplodedPolyline& polyline, std::size_t segment, PlaceKind end) {
    return {polyline.pieces[segment], polyline.isReversed(segment) ? otherEnd(end) : end};
}

/// Nothing for a place on a segment without a length.
std::optional<Place> carried(const Place& place, const ExplodedPolylines& polylines) {
    const auto found = polylines.find(place.entity);
    if (found == polylines.end())
        return place;
    const auto segment = static_cast<std::size_t>(place.index);
    if (found->second.pieces[segment].empty())
        return std::nullopt;
    const PlaceKind kind = onPiece(place.kind);
    return kind == PlaceKind::start || kind == PlaceKind::end ? endOfPiece(found->second, segment, kind)
                                                              : Place{found->second.pieces[segment], kind};
}

std::optional<Constraint> carried(Constraint constraint, const ExplodedPolylines& polylines) {
    constraint.implied = false;
    for (Place& place : constraint.refs) {
        std::optional<Place> now = carried(place, polylines);
        if (!now)
            return std::nullopt;
        place = std::move(*now);
    }
    return constraint;
}

/// Composites come back behind their members, and what helps other entities with these.
bool standsAlone(const Constraint& constraint) {
    return constraint.members.empty() && constraint.type != ConstraintType::internal;
}

/// Two neighbouring segments of a polyline that have a length.
using Neighbours = std::pair<std::size_t, std::size_t>;

std::vector<Neighbours> neighboursOf(const ExplodedPolyline& polyline) {
    std::vector<std::size_t> segments;
    for (std::size_t i = 0; i < polyline.pieces.size(); ++i)
        if (!polyline.pieces[i].empty())
            segments.push_back(i);
    std::vector<Neighbours> found;
    for (std::size_t i = 0; i + 1 < segments.size(); ++i)
        found.emplace_back(segments[i], segments[i + 1]);
    if (polyline.shape.closed && segments.size() > 1)
        found.emplace_back(segments.back(), segments.front());
    return found;
}

bool runsOn(const PolylineShape& polyline, const Neighbours& pair) {
    const auto [a, b] = pair;
    if (polyline.bulges[a] == 0.0 && polyline.bulges[b] == 0.0)
        return false;
    const auto& v = polyline.vertices;
    const Vec2 arrives = endDirection(v[a], v[segmentEndVertex(polyline, a)], polyline.bulges[a]);
    const Vec2 leaves = startDirection(v[b], v[segmentEndVertex(polyline, b)], polyline.bulges[b]);
    return std::abs(cross(arrives, leaves)) <= kSameDirection && dot(arrives, leaves) > 0.0;
}

using TiedEnds = std::set<std::pair<std::string, std::string>>;

std::pair<std::string, std::string> tied(const Place& a, const Place& b) {
    return std::minmax(spokenPlace(a), spokenPlace(b));
}

/// The ends that carried coincidences tie already.
TiedEnds tiedEnds(const Document& document) {
    TiedEnds ends;
    for (const Constraint& constraint : document.constraints)
        if (constraint.type == ConstraintType::coincident && constraint.active && constraint.refs.size() == 2)
            ends.insert(tied(constraint.refs[0], constraint.refs[1]));
    return ends;
}

/// Vertices become coincidences: the ends of as many entities as there were segments are as free as the vertices were.
void tieNeighbours(Drawing& drawing, const ExplodedPolyline& polyline) {
    const TiedEnds known = tiedEnds(drawing.around(polyline.pieces));
    std::vector<Constraint> tangents;
    for (const Neighbours& pair : neighboursOf(polyline)) {
        const Place end = endOfPiece(polyline, pair.first, PlaceKind::end);
        const Place start = endOfPiece(polyline, pair.second, PlaceKind::start);
        if (!known.contains(tied(end, start)))
            drawing.addConstraint({.type = ConstraintType::coincident, .refs = {end, start}});
        if (runsOn(polyline.shape, pair))
            tangents.push_back({.type = ConstraintType::tangent, .refs = {{end.entity}, {start.entity}}});
    }
    addNew(drawing, std::move(tangents));
}

}  // namespace

void carryToPieces(const EditContext& context, const Document& before, const ExplodedPolylines& polylines) {
    Drawing& drawing = context.drawing;
    std::vector<std::string> names;
    for (const Entity& entity : before.entities)
        names.push_back(entity.id);
    for (const auto& [name, polyline] : polylines)
        for (const std::string& piece : polyline.pieces)
            if (!piece.empty())
                names.push_back(piece);
    Document document = drawing.around(names);
    const EntityIndex entities(document);
    const std::size_t first = document.constraints.size();
    for (const Constraint& constraint : before.constraints) {
        if (drawing.hasConstraint(constraint.id) || !standsAlone(constraint))
            continue;
        std::optional<Constraint> now = carried(constraint, polylines);
        context.reasons.note(constraint.id, now ? "it does not hold on the pieces of its polyline"
                                                : "it was on a segment without a length");
        if (now && !faultIn(*now, entities))
            document.constraints.push_back(std::move(*now));
    }
    addHolding(drawing, document, first);
    restoreComposites(context);
    for (const auto& [name, polyline] : polylines)
        tieNeighbours(drawing, polyline);
}

}  // namespace holdfast::editing
