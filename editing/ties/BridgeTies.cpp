#include "editing/ties/BridgeTies.h"

#include <set>
#include <utility>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/ties/BoundaryTies.h"
#include "editing/ties/EndPlaces.h"
#include "geometry/Segments.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

std::string touching(const std::string& bridge, const Place& curve) {
    return bridge + " runs smoothly into " + spokenPlace(curve);
}

/// What an end of a bridge meets on one of the edited curves: an end, or a point of a curve without a new end.
struct Landing {
    Place place;
    bool isEnd = true;
};

std::optional<Landing> landingOn(const TieScene& scene, const std::string& curve, Vec2 at) {
    for (const std::string& piece : scene.piecesOf(curve))
        if (const std::optional<Place> end = endAt(piece, *scene.now(piece), at, scene.near()))
            return Landing{*end};
    for (const std::string& piece : scene.piecesOf(curve))
        if (const std::optional<Place> on = curveAt(piece, *scene.now(piece), at, scene.near()))
            return Landing{*on, false};
    return {};
}

void tieEnd(const TieScene& scene, const Place& end, bool isArc, std::vector<Tie>& ties) {
    const Vec2 at = *pointAt(*scene.now(end.entity), end);
    const std::string leads = end.entity + (end.kind == PlaceKind::start ? " begins" : " ends");
    for (const std::string& curve : scene.editedCurves()) {
        const std::optional<Landing> landing = landingOn(scene, curve, at);
        if (!landing)
            continue;
        const Place& place = landing->place;
        if (landing->isEnd)
            ties.push_back(tieOf(ConstraintType::coincident, {place, end}, leads + " at " + spokenEnd(place)));
        else
            ties.push_back(tieOf(ConstraintType::pointOnCurve, {end, place}, leads + " on " + spokenPlace(place)));
        if (isArc)
            ties.push_back(tieOf(ConstraintType::tangent,
                                 landing->isEnd ? std::vector{place, end} : std::vector{end, place},
                                 touching(end.entity, place)));
        return;
    }
}

/// The curves meet in a sharp corner, or one ends on the other, which has stayed whole.
void tieSharpCorner(const TieScene& scene, std::vector<Tie>& ties) {
    const std::vector<std::string>& curves = scene.editedCurves();
    if (curves.size() != 2)
        return;
    for (const bool isFirst : {true, false})
        for (const Place& end : newEndsOf(scene, isFirst ? curves.front() : curves.back())) {
            const std::optional<Landing> landing =
                landingOn(scene, isFirst ? curves.back() : curves.front(), *pointAt(*scene.now(end.entity), end));
            if (!landing || landing->place.entity == end.entity)
                continue;
            const Place& place = landing->place;
            ties.push_back(tieOf(
                landing->isEnd ? ConstraintType::coincident : ConstraintType::pointOnCurve, {end, place},
                spokenEnd(end) + (landing->isEnd ? " meets " + spokenEnd(place) : " lies on " + spokenPlace(place))));
        }
}

std::set<std::pair<double, double>> formerVertices(const TieScene& scene) {
    std::set<std::pair<double, double>> vertices;
    for (const std::string& curve : scene.editedCurves())
        if (const Shape* was = scene.before(curve))
            if (const auto* polyline = std::get_if<PolylineShape>(was))
                for (const Vec2 vertex : polyline->vertices)
                    vertices.emplace(vertex.x, vertex.y);
    return vertices;
}

/// Segments that lead from one new vertex to another with an arc.
void tieArcSegments(const TieScene& scene, const std::string& name, std::vector<Tie>& ties) {
    const auto* polyline = std::get_if<PolylineShape>(scene.now(name));
    if (polyline == nullptr)
        return;
    const std::set<std::pair<double, double>> former = formerVertices(scene);
    const auto isNew = [&](std::size_t vertex) {
        const Vec2 at = polyline->vertices[vertex];
        return !former.contains({at.x, at.y});
    };
    const std::size_t count = segmentCount(*polyline), vertices = polyline->vertices.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (polyline->bulges[i] == 0.0 || !isNew(i) || !isNew((i + 1) % vertices))
            continue;
        const auto number = [](std::size_t index) { return static_cast<int>(index); };
        const std::string arc = spokenPlace({name, PlaceKind::segment, number(i)});
        const auto tie = [&](std::size_t before, std::size_t behind, std::size_t neighbour) {
            ties.push_back(
                tieOf(ConstraintType::tangent,
                      {{name, PlaceKind::segmentEnd, number(before)}, {name, PlaceKind::segmentStart, number(behind)}},
                      touching(arc, {name, PlaceKind::segment, number(neighbour)})));
        };
        if (i > 0 || polyline->closed)
            tie((i + count - 1) % count, i, (i + count - 1) % count);
        if (i + 1 < count || polyline->closed)
            tie(i, (i + 1) % count, (i + 1) % count);
    }
}

}  // namespace

void tieBridges(const TieScene& scene, std::vector<Tie>& ties) {
    for (const std::string& bridge : scene.bridges()) {
        const Shape& shape = *scene.now(bridge);
        const bool isArc = std::holds_alternative<ArcShape>(shape);
        if (isArc || std::holds_alternative<LineShape>(shape))
            for (const Place& end : endsOf(bridge, shape))
                tieEnd(scene, end, isArc, ties);
    }
    tieSharpCorner(scene, ties);
    for (const std::string& curve : scene.editedCurves())
        for (const std::string& piece : scene.piecesOf(curve))
            tieArcSegments(scene, piece, ties);
}

}  // namespace holdfast::editing
