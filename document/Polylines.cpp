#include "document/Polylines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "document/EndJoints.h"
#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"

namespace holdfast::document {
namespace {

/// An entity on its way to be a segment: which one, and whether the polyline runs against it.
struct Link {
    std::size_t entity;
    bool reversed;
};

struct Chain {
    std::vector<Link> links;
    bool closed = false;
};

/// Follows the joints from chain to chain; an entity is visited once.
class ChainFinder {
public:
    ChainFinder(std::size_t entityCount, std::vector<std::size_t> joints)
        : m_joints(std::move(joints)), m_seen(entityCount, false) {}

    /// Chains of two or more, by their first entity in the document.
    std::vector<Chain> find() {
        std::vector<Chain> chains;
        for (std::size_t i = 0; i < m_seen.size(); ++i) {
            if (m_seen[i])
                continue;
            Chain chain = chainThrough(i);
            if (chain.links.size() > 1)
                chains.push_back(std::move(chain));
        }
        return chains;
    }

private:
    /// The chain in the direction of an entity: what follows its end, and in front of it what precedes its start.
    Chain chainThrough(std::size_t entity) {
        m_seen[entity] = true;
        Chain chain;
        const std::vector<Link> after = follow({entity, false});
        chain.closed = !after.empty() && m_joints[numberOf({entity, true})] == exitOf(after.back());
        std::vector<Link> before;
        if (!chain.closed)
            before = follow({entity, true});
        for (auto link = before.rbegin(); link != before.rend(); ++link)
            chain.links.push_back({link->entity, !link->reversed});
        chain.links.push_back({entity, false});
        chain.links.insert(chain.links.end(), after.begin(), after.end());
        return chain;
    }

    /// The links behind one, up to the chain's end or to an entity that was seen.
    std::vector<Link> follow(Link link) {
        std::vector<Link> links;
        for (;;) {
            const std::size_t joint = m_joints[exitOf(link)];
            if (joint == kNoEnd || m_seen[endOfNumber(joint).entity])
                return links;
            link = {endOfNumber(joint).entity, !endOfNumber(joint).atStart};
            m_seen[link.entity] = true;
            links.push_back(link);
        }
    }

    static std::size_t exitOf(Link link) { return numberOf({link.entity, link.reversed}); }

    std::vector<std::size_t> m_joints;
    std::vector<bool> m_seen;
};

Vec2 pointOn(const Entity& entity, bool atStart) {
    return *pointAt(entity.shape, {entity.id, atStart ? PlaceKind::start : PlaceKind::end, 0});
}

double bulgeOf(const Entity& entity, bool reversed) {
    const auto* arc = std::get_if<ArcShape>(&entity.shape);
    if (arc == nullptr)
        return 0.0;
    const double bulge = bulgeOfAngle(arc->endAngle - arc->startAngle);
    return reversed ? -bulge : bulge;
}

PolylineShape polylineOf(const Document& document, const Chain& chain) {
    PolylineShape polyline;
    polyline.closed = chain.closed;
    for (const Link& link : chain.links) {
        const Entity& entity = document.entities[link.entity];
        polyline.vertices.push_back(pointOn(entity, !link.reversed));
        polyline.bulges.push_back(bulgeOf(entity, link.reversed));
    }
    if (!chain.closed) {
        const Link& last = chain.links.back();
        polyline.vertices.push_back(pointOn(document.entities[last.entity], last.reversed));
        polyline.bulges.push_back(0.0);
    }
    polyline.ids.assign(polyline.vertices.size(), 0);
    return polyline;
}

/// Where an entity has gone.
struct Segment {
    std::string polyline;
    int index;
    bool reversed;
};

PlaceKind onSegment(PlaceKind kind, bool reversed) {
    switch (kind) {
        case PlaceKind::start:
            return reversed ? PlaceKind::segmentEnd : PlaceKind::segmentStart;
        case PlaceKind::end:
            return reversed ? PlaceKind::segmentStart : PlaceKind::segmentEnd;
        case PlaceKind::mid:
            return PlaceKind::segmentMid;
        case PlaceKind::centre:
            return PlaceKind::segmentCentre;
        default:
            return PlaceKind::segment;
    }
}

class Converter {
public:
    Converter(const Document& document, double tolerance) : m_source(document) {
        m_result.document = document;
        m_result.document.entities.clear();
        m_result.document.constraints.clear();
        for (const Chain& chain : ChainFinder(document.entities.size(), jointsOf(document, tolerance)).find())
            add(chain);
    }

    PolylineConversion convert() {
        for (std::size_t i = 0; i < m_source.entities.size(); ++i)
            moveEntity(i);
        for (const Constraint& constraint : m_source.constraints)
            m_owned.insert(constraint.members.begin(), constraint.members.end());
        for (const Constraint& constraint : m_source.constraints)
            moveConstraint(constraint);
        return std::move(m_result);
    }

private:
    void add(const Chain& chain) {
        const std::string id = freshId();
        const Entity& model = m_source.entities[chain.links.front().entity];
        Entity entity{
            .id = id, .shape = polylineOf(m_source, chain), .construction = model.construction, .look = model.look};
        m_vertexCounts.emplace(id, static_cast<int>(std::get<PolylineShape>(entity.shape).vertices.size()));
        PolylineChain record{id, {}};
        std::size_t first = chain.links.front().entity;
        for (std::size_t i = 0; i < chain.links.size(); ++i) {
            const std::string& name = m_source.entities[chain.links[i].entity].id;
            m_segments.emplace(name, Segment{id, static_cast<int>(i), chain.links[i].reversed});
            record.entities.push_back(name);
            first = std::min(first, chain.links[i].entity);
        }
        m_polylines.emplace(first, std::move(entity));
        m_result.chains.push_back(std::move(record));
    }

    std::string freshId() {
        std::string id;
        do {
            id = "p" + std::to_string(m_nextId++);
        } while (m_entities.find(id) != nullptr);
        return id;
    }

    /// A polyline stands where its first entity stood.
    void moveEntity(std::size_t position) {
        const auto polyline = m_polylines.find(position);
        if (polyline != m_polylines.end())
            m_result.document.entities.push_back(polyline->second);
        else if (!m_segments.contains(m_source.entities[position].id))
            m_result.document.entities.push_back(m_source.entities[position]);
    }

    Place moved(const Place& place) const {
        const auto segment = m_segments.find(place.entity);
        if (segment == m_segments.end())
            return place;
        const Segment& s = segment->second;
        return {s.polyline, onSegment(place.kind, s.reversed), s.index};
    }

    /// In an angle, a whole line or its start stands for its direction, the end for the opposite one; a segment that
    /// runs against its line has them the other way round.
    Place movedDirection(const Place& place) const {
        const auto segment = m_segments.find(place.entity);
        const bool turns = segment != m_segments.end() && segment->second.reversed && place.kind == PlaceKind::whole &&
                           std::holds_alternative<LineShape>(m_entities.find(place.entity)->shape);
        return turns ? moved({place.entity, PlaceKind::start, 0}) : moved(place);
    }

    Place movedRef(const Constraint& constraint, std::size_t i) const {
        // With a third ref, an angle is measured between curves, modulo pi: their directions have no meaning.
        const bool isDirection = constraint.type == ConstraintType::angle && constraint.refs.size() < 3;
        return isDirection ? movedDirection(constraint.refs[i]) : moved(constraint.refs[i]);
    }

    void moveConstraint(const Constraint& constraint) {
        Constraint result = constraint;
        for (std::size_t i = 0; i < constraint.refs.size(); ++i)
            result.refs[i] = movedRef(constraint, i);
        if (isNeedless(result))
            m_result.dropped.push_back(constraint.id);
        else
            m_result.document.constraints.push_back(std::move(result));
    }

    /// A coincidence of a vertex with itself, or one that repeats another on the same vertex.
    bool isNeedless(const Constraint& constraint) {
        if (constraint.type != ConstraintType::coincident || !constraint.active || m_owned.contains(constraint.id))
            return false;
        std::string a = pointName(constraint.refs[0]), b = pointName(constraint.refs[1]);
        const bool concernsVertex = a.starts_with('\n') || b.starts_with('\n');
        if (b < a)
            a.swap(b);
        return concernsVertex && (a == b || !m_said.insert(a + '\t' + b).second);
    }

    /// The vertex of a converted polyline that a place names, or the place itself.
    std::string pointName(const Place& place) const {
        const bool isVertex = place.kind == PlaceKind::segmentStart || place.kind == PlaceKind::segmentEnd;
        const auto count = isVertex ? m_vertexCounts.find(place.entity) : m_vertexCounts.end();
        if (count == m_vertexCounts.end())
            return spokenPlace(place);
        const int vertex = place.index + (place.kind == PlaceKind::segmentEnd ? 1 : 0);
        return "\n" + place.entity + " " + std::to_string(vertex % count->second);
    }

    const Document& m_source;
    EntityIndex m_entities{m_source};
    PolylineConversion m_result;
    std::size_t m_nextId = 0;
    std::unordered_map<std::size_t, Entity> m_polylines;  // by the position of their first entity
    std::unordered_map<std::string, Segment> m_segments;  // by the entity that became one
    std::unordered_map<std::string, int> m_vertexCounts;  // by polyline
    std::unordered_set<std::string_view> m_owned;         // constraints that others own
    std::unordered_set<std::string> m_said;               // coincidences of vertices, by their points
};

}  // namespace

PolylineConversion chainsToPolylines(const Document& document, double tolerance) {
    return Converter(document, tolerance).convert();
}

}  // namespace holdfast::document
