#include "editing/ties/CarriedPlaces.h"

#include "document/Places.h"
#include "editing/ties/EndPlaces.h"
#include "geometry/Segments.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::editing {

namespace {

bool isCounted(const PolylineShape& polyline, int segment) {
    return segment >= 0 && static_cast<std::size_t>(segment) < segmentCount(polyline);
}

bool isEndOfSegment(const Place& place) {
    return place.kind == PlaceKind::segmentStart || place.kind == PlaceKind::segmentEnd;
}

}  // namespace

const CarriedPlaces::VertexNumbers& CarriedPlaces::verticesOf(const std::string& piece) {
    const auto [known, isNew] = m_vertices.try_emplace(piece);
    if (isNew)
        if (const auto* polyline = std::get_if<PolylineShape>(m_scene.now(piece)))
            for (std::size_t i = 0; i < polyline->vertices.size(); ++i)
                known->second.emplace(std::pair(polyline->vertices[i].x, polyline->vertices[i].y), static_cast<int>(i));
    return known->second;
}

/// A segment is another one's when its middle lies on that.
bool CarriedPlaces::isSegmentOf(const Place& now, const Shape& was) const {
    const auto* polyline = std::get_if<PolylineShape>(m_scene.now(now.entity));
    if (polyline == nullptr || !isCounted(*polyline, now.index))
        return false;
    const Shape curve = curveOf(*polyline, now);
    const ParamRange range = paramRange(curve);
    return curve.index() == was.index() &&
           nearestOn(was, pointAt(curve, 0.5 * (range.first + range.last))).distance <= m_scene.near();
}

/// The segment that shares a vertex with the former one and lies on it.
std::optional<Place> CarriedPlaces::segmentNow(const Place& place) {
    const auto* was = std::get_if<PolylineShape>(m_scene.before(place.entity));
    if (was == nullptr || !isCounted(*was, place.index))
        return {};
    const auto start = static_cast<std::size_t>(place.index);
    const Shape former = curveOf(*was, {place.entity, PlaceKind::segment, place.index});
    for (const Vec2 vertex : {was->vertices[start], was->vertices[segmentEndVertex(*was, start)]})
        for (const std::string& piece : m_scene.piecesOf(place.entity)) {
            const auto* polyline = std::get_if<PolylineShape>(m_scene.now(piece));
            const auto [first, last] = verticesOf(piece).equal_range({vertex.x, vertex.y});
            for (auto found = first; found != last && polyline != nullptr; ++found) {
                const int before =
                    found->second > 0 ? found->second - 1 : static_cast<int>(segmentCount(*polyline)) - 1;
                for (const int segment : {found->second, before})
                    if (const Place now{piece, PlaceKind::segment, segment}; isSegmentOf(now, former))
                        return now;
            }
        }
    return {};
}

std::optional<Place> CarriedPlaces::renamed(const Place& place) {
    if (isSegmentPlace(place)) {
        const std::optional<Place> segment = segmentNow(place);
        return segment ? std::optional(Place{segment->entity, place.kind, segment->index}) : std::nullopt;
    }
    for (const std::string& piece : m_scene.piecesOf(place.entity))
        if (const Place now{piece, place.kind, place.index}; hasPlace(*m_scene.now(piece), now))
            return now;
    return {};
}

std::optional<Place> CarriedPlaces::onPieces(const Place& place, Vec2 at) {
    const auto isThere = [&](const Place& now) {
        const std::optional<Vec2> point = pointAt(*m_scene.now(now.entity), now);
        return point && m_scene.isSame(*point, at);
    };
    if (const std::optional<Place> segment = isSegmentPlace(place) ? segmentNow(place) : std::nullopt)
        for (const PlaceKind kind : {place.kind, PlaceKind::segmentStart, PlaceKind::segmentEnd})
            if (const Place now{segment->entity, kind, segment->index};
                (kind == place.kind || isEndOfSegment(place)) && isThere(now))
                return now;
    for (const std::string& piece : m_scene.piecesOf(place.entity))
        if (const Place now{piece, place.kind, place.index};
            !isSegmentPlace(place) && hasPlace(*m_scene.now(piece), now) && isThere(now))
            return now;
    const bool isEnd = place.kind == PlaceKind::start || place.kind == PlaceKind::end || isEndOfSegment(place);
    if (isEnd)
        for (const std::string& piece : m_scene.piecesOf(place.entity))
            if (std::optional<Place> end = endAt(piece, *m_scene.now(piece), at, m_scene.near()))
                return end;
    return {};
}

std::optional<Place> CarriedPlaces::unmoved(const Place& place) {
    const Shape* was = m_scene.before(place.entity);
    const std::optional<Vec2> at = was == nullptr ? std::nullopt : pointAt(*was, place);
    if (!at)
        return {};
    if (std::optional<Place> found = onPieces(place, *at))
        return found;
    if (!m_scene.keptCorner())
        return {};
    const Place corner{*m_scene.keptCorner(), PlaceKind::whole};
    const std::optional<Vec2> point = pointAt(*m_scene.now(corner.entity), corner);
    return point && m_scene.isSame(*point, *at) ? std::optional(corner) : std::nullopt;
}

std::optional<Place> CarriedPlaces::through(const Place& curve, Vec2 point) {
    if (isSegmentPlace(curve)) {
        std::optional<Place> same = segmentNow(curve);
        if (same && m_scene.passes(curveOf(*m_scene.now(same->entity), *same), point))
            return same;
        for (const std::string& piece : m_scene.piecesOf(curve.entity))
            if (std::optional<Place> now = curveAt(piece, *m_scene.now(piece), point, m_scene.near()))
                return now;
        return {};
    }
    for (const std::string& piece : m_scene.piecesOf(curve.entity))
        if (isCurve(*m_scene.now(piece)) && m_scene.passes(*m_scene.now(piece), point))
            return Place{piece, curve.kind, curve.index};
    return {};
}

}  // namespace holdfast::editing
