#include "editing/define/ProposedDimensions.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_set>
#include <utility>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

constexpr const char* kStands = "its value as it stands";

Place placeOf(const Entity& entity, PlaceKind kind, std::size_t index = 0) {
    return {entity.id, kind, static_cast<int>(index)};
}

struct PointLister {
    const Entity& entity;

    std::vector<Place> places(std::initializer_list<PlaceKind> kinds) const {
        std::vector<Place> found;
        for (const PlaceKind kind : kinds)
            found.push_back(placeOf(entity, kind));
        return found;
    }
    std::vector<Place> operator()(const LineShape&) const { return places({PlaceKind::start, PlaceKind::end}); }
    std::vector<Place> operator()(const ArcShape&) const {
        return places({PlaceKind::start, PlaceKind::end, PlaceKind::centre});
    }
    std::vector<Place> operator()(const EllipticalArcShape&) const {
        return places({PlaceKind::start, PlaceKind::end, PlaceKind::centre});
    }
    std::vector<Place> operator()(const CircleShape&) const { return places({PlaceKind::centre}); }
    std::vector<Place> operator()(const EllipseShape&) const { return places({PlaceKind::centre}); }
    std::vector<Place> operator()(const PointShape&) const { return places({PlaceKind::whole}); }
    std::vector<Place> operator()(const XlineShape&) const { return places({PlaceKind::start}); }
    std::vector<Place> operator()(const RayShape&) const { return places({PlaceKind::start}); }
    std::vector<Place> operator()(const TextShape&) const { return places({PlaceKind::start}); }
    std::vector<Place> operator()(const SplineShape& spline) const {
        std::vector<Place> found;
        for (std::size_t i = 0; i < spline.control.size(); ++i)
            found.push_back(placeOf(entity, PlaceKind::control, i));
        return found;
    }
    std::vector<Place> operator()(const PolylineShape& polyline) const {
        std::vector<Place> found;
        for (std::size_t i = 0; i < segmentCount(polyline); ++i)
            found.push_back(placeOf(entity, PlaceKind::segmentStart, i));
        if (!polyline.closed && segmentCount(polyline) > 0)
            found.push_back(placeOf(entity, PlaceKind::segmentEnd, segmentCount(polyline) - 1));
        return found;
    }
};

/// Straight and bent pieces of a drawing: entities, and the segments of polylines.
struct Piece {
    Place whole;
    double length = 0.0;  ///< of a straight one
    double sweep = 0.0;   ///< of a bent one, as an arc's angle; 0: straight
    bool isCircle = false;
    std::optional<double> heading{};  ///< of a straight one
};

double headingOf(Vec2 from, Vec2 to) {
    return std::atan2(to.y - from.y, to.x - from.x);
}

struct PieceLister {
    const Entity& entity;

    Place whole() const { return placeOf(entity, PlaceKind::whole); }
    std::vector<Piece> operator()(const LineShape& s) const {
        return {{whole(), distance(s.start, s.end), 0.0, false, headingOf(s.start, s.end)}};
    }
    std::vector<Piece> operator()(const ArcShape& s) const { return {{whole(), 0.0, s.endAngle - s.startAngle}}; }
    std::vector<Piece> operator()(const CircleShape&) const { return {{whole(), 0.0, kTurn, true}}; }
    std::vector<Piece> operator()(const XlineShape& s) const {
        return {{whole(), 0.0, 0.0, false, headingOf({}, s.direction)}};
    }
    std::vector<Piece> operator()(const RayShape& s) const {
        return {{whole(), 0.0, 0.0, false, headingOf({}, s.direction)}};
    }
    std::vector<Piece> operator()(const PolylineShape& s) const {
        std::vector<Piece> pieces;
        for (std::size_t i = 0; i < segmentCount(s); ++i) {
            const Vec2 from = s.vertices[i], to = s.vertices[segmentEndVertex(s, i)];
            const Place segment = placeOf(entity, PlaceKind::segment, i);
            if (s.bulges[i] == 0.0)
                pieces.push_back({segment, distance(from, to), 0.0, false, headingOf(from, to)});
            else
                pieces.push_back({segment, 0.0, 4.0 * std::atan(std::abs(s.bulges[i]))});
        }
        return pieces;
    }
    template <class Other>
    std::vector<Piece> operator()(const Other&) const {
        return {};
    }
};

Proposal proposal(ConstraintType type, std::vector<Place> refs, std::string reason) {
    Proposal found;
    found.constraint.type = type;
    found.constraint.refs = std::move(refs);
    if (traitsOf(type).isDimension())
        found.constraint.value = 1.0;  // any that all of them may have, until it is measured
    found.reason = std::move(reason);
    return found;
}

std::unordered_set<std::string> withHelpers(const Document& document) {
    std::unordered_set<std::string> found;
    for (const Constraint& constraint : document.constraints)
        if (constraint.type == ConstraintType::internal)
            for (const Place& place : constraint.refs)
                found.insert(place.entity);
    return found;
}

bool isEllipse(const Entity& entity) {
    return std::holds_alternative<EllipseShape>(entity.shape) ||
           std::holds_alternative<EllipticalArcShape>(entity.shape);
}

/// How far from the nearest multiple of a quarter turn, and whether that lies along x.
std::pair<double, bool> uprightness(double angle) {
    const double quarters = std::round(angle / kQuarterTurn);
    return {std::abs(angle - quarters * kQuarterTurn), std::fmod(std::abs(quarters), 2.0) == 0.0};
}

std::optional<double> freeHeadingOf(const Shape& shape) {
    if (const auto* text = std::get_if<TextShape>(&shape))
        return text->rotation;
    if (const auto* ray = std::get_if<RayShape>(&shape))
        return headingOf({}, ray->direction);
    if (const auto* xline = std::get_if<XlineShape>(&shape))
        return headingOf({}, xline->direction);
    return std::nullopt;
}

/// The dimensions of one drawing from one datum.
class Dimensions {
public:
    Dimensions(const Document& document, const Datum& datum, double same)
        : m_document(document), m_index(document), m_datum(datum), m_at{at(datum.x).x, at(datum.y).y}, m_same(same) {}

    std::vector<Proposal> all(const std::vector<std::vector<std::size_t>>& parts) {
        std::vector<Piece> pieces;
        for (const Entity& entity : m_document.entities)
            if (!entity.fixed)
                for (Piece& piece : std::visit(PieceLister{entity}, entity.shape))
                    pieces.push_back(std::move(piece));
        addWholeSplines();
        addRadii(pieces);
        addLengths(pieces);
        addParts(parts);
        addCentres();
        addAngles(pieces);
        addPoints();
        return std::move(m_found);
    }

private:
    Vec2 at(const Place& place) const { return *pointAt(m_index.find(place.entity)->shape, place); }

    void add(ConstraintType type, std::vector<Place> refs, std::string reason = kStands) {
        m_found.push_back(proposal(type, std::move(refs), std::move(reason)));
    }

    /// A spline that nothing is tied to is held as it is.
    void addWholeSplines() {
        std::unordered_set<std::string> tied;
        for (const Constraint& constraint : m_document.constraints)
            for (const Place& place : constraint.refs)
                tied.insert(place.entity);
        for (const Entity& entity : m_document.entities)
            if (!entity.fixed && std::holds_alternative<SplineShape>(entity.shape) && !tied.contains(entity.id))
                add(ConstraintType::fixed, {placeOf(entity, PlaceKind::whole)},
                    "no dimension takes the shape of a spline");
    }

    void addRadii(const std::vector<Piece>& pieces) {
        for (const Piece& piece : pieces)
            if (piece.sweep > 0.0)
                add(piece.isCircle ? ConstraintType::diameter : ConstraintType::radius, {piece.whole});
    }

    /// The longest first: what goes all the way is given before its parts.
    void addLengths(const std::vector<Piece>& pieces) {
        std::vector<const Piece*> lines;
        for (const Piece& piece : pieces)
            if (piece.length > m_same)
                lines.push_back(&piece);
        std::stable_sort(lines.begin(), lines.end(),
                         [&](const Piece* a, const Piece* b) { return a->length > b->length + m_same; });
        for (const Piece* line : lines)
            add(ConstraintType::distance, {line->whole});
    }

    /// Where a point lies from the datum: a level, or the distance along an axis, from the datum on.
    void addPlace(const Place& place) {
        const Vec2 point = at(place);
        addCoordinate(true, m_datum.x, m_at.x, place, point.x);
        addCoordinate(false, m_datum.y, m_at.y, place, point.y);
    }

    void addCoordinate(bool isX, const Place& datum, double from, const Place& place, double to) {
        if (place == datum)
            return;
        if (std::abs(to - from) <= m_same)
            add(isX ? ConstraintType::vertical : ConstraintType::horizontal, {datum, place},
                "it is level with the datum " + spokenPlace(datum));
        else
            add(isX ? ConstraintType::distanceX : ConstraintType::distanceY,
                to < from ? std::vector<Place>{place, datum} : std::vector<Place>{datum, place},
                "where it lies from the datum " + spokenPlace(datum) + ", as it stands");
    }

    void addParts(const std::vector<std::vector<std::size_t>>& parts) {
        for (const std::vector<std::size_t>& part : parts) {
            std::optional<Place> lowest;
            for (const std::size_t number : part)
                for (const Place& place : pointsOf(m_document.entities[number]))
                    if (place.kind != PlaceKind::control && (!lowest || isLower(place, *lowest)))
                        lowest = place;
            if (lowest)
                addPlace(*lowest);
        }
    }

    bool isLower(const Place& a, const Place& b) const {
        const Vec2 p = at(a), q = at(b);
        return p.x + p.y < q.x + q.y - m_same;
    }

    void addCentres() {
        for (const Entity& entity : m_document.entities)
            for (const Place& place : pointsOf(entity))
                if (!entity.fixed && place.kind == PlaceKind::centre)
                    addPlace(place);
    }

    void addAngles(const std::vector<Piece>& pieces) {
        for (const Piece& piece : pieces)
            if (piece.heading || (piece.sweep > 0.0 && !piece.isCircle))
                add(ConstraintType::angle, {piece.whole});
    }

    void addPoints() {
        for (const Entity& entity : m_document.entities)
            if (!entity.fixed)
                for (const Place& place : pointsOf(entity)) {
                    if (place.kind == PlaceKind::control)
                        add(ConstraintType::fixed, {place}, "it shapes a spline, where no dimension helps");
                    addPlace(place);
                }
    }

    const Document& m_document;
    EntityIndex m_index;
    Datum m_datum;
    Vec2 m_at;
    double m_same;
    std::vector<Proposal> m_found;
};

}  // namespace

std::vector<Place> pointsOf(const Entity& entity) {
    return std::visit(PointLister{entity}, entity.shape);
}

std::vector<Proposal> heldEllipses(const Document& document) {
    const std::unordered_set<std::string> helped = withHelpers(document);
    std::vector<Proposal> found;
    for (const Entity& entity : document.entities)
        if (!entity.fixed && isEllipse(entity) && !helped.contains(entity.id))
            found.push_back(proposal(ConstraintType::fixed, {placeOf(entity, PlaceKind::whole)},
                                     "no dimension takes the axes of an ellipse"));
    return found;
}

std::vector<Proposal> uprightProposals(const Document& document, double same) {
    std::vector<Proposal> found;
    for (const Entity& entity : document.entities) {
        const auto heading = entity.fixed ? std::nullopt : freeHeadingOf(entity.shape);
        if (!heading)
            continue;
        if (const auto [off, isLevel] = uprightness(*heading); off <= same)
            found.push_back(proposal(isLevel ? ConstraintType::horizontal : ConstraintType::vertical,
                                     {placeOf(entity, PlaceKind::whole)}, {}));
    }
    return found;
}

namespace {

/// Where a direction without a sense points, between 0 and half a turn.
double undirected(double heading) {
    const double angle = std::fmod(heading, kPi);
    return angle < 0.0 ? angle + kPi : angle;
}

/// The straight pieces of a drawing by their direction.
std::vector<std::pair<double, Place>> straightPieces(const Document& document) {
    std::vector<std::pair<double, Place>> lines;
    for (const Entity& entity : document.entities)
        for (const Piece& piece : std::visit(PieceLister{entity}, entity.shape))
            if (piece.heading)
                lines.emplace_back(undirected(*piece.heading), piece.whole);
    std::stable_sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    return lines;
}

std::optional<Place> lineAlong(const std::vector<std::pair<double, Place>>& lines, double heading, double same) {
    const auto found = std::lower_bound(lines.begin(), lines.end(), undirected(heading) - same,
                                        [](const auto& line, double angle) { return line.first < angle; });
    if (found == lines.end() || found->first > undirected(heading) + same)
        return std::nullopt;
    return found->second;
}

}  // namespace

std::vector<Proposal> slantedTexts(const Document& document, double same) {
    const auto lines = straightPieces(document);
    std::vector<Proposal> found;
    for (const Entity& entity : document.entities) {
        const auto* text = std::get_if<TextShape>(&entity.shape);
        if (text == nullptr || entity.fixed || uprightness(text->rotation).first <= same)
            continue;
        if (const auto along = lineAlong(lines, text->rotation, same))
            found.push_back(proposal(ConstraintType::parallel, {*along, placeOf(entity, PlaceKind::whole)}, {}));
        else if (const auto across = lineAlong(lines, text->rotation + kQuarterTurn, same))
            found.push_back(proposal(ConstraintType::perpendicular, {*across, placeOf(entity, PlaceKind::whole)}, {}));
    }
    return found;
}

std::vector<Proposal> proposedDimensions(const Document& document, const Datum& datum,
                                         const std::vector<std::vector<std::size_t>>& parts, double same) {
    return Dimensions(document, datum, same).all(parts);
}

}  // namespace holdfast::editing
