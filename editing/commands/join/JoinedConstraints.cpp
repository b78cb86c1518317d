#include "editing/commands/join/JoinedConstraints.h"

#include <algorithm>
#include <vector>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/EditContext.h"
#include "editing/constraints/HoldingConstraints.h"

namespace holdfast::editing {

namespace {

PlaceKind onSegment(PlaceKind kind, bool reversed) {
    using enum PlaceKind;
    switch (kind) {
        case start:
        case segmentStart:
            return reversed ? segmentEnd : segmentStart;
        case end:
        case segmentEnd:
            return reversed ? segmentStart : segmentEnd;
        case mid:
            return segmentMid;
        case centre:
            return segmentCentre;
        case whole:
            return segment;
        default:
            return kind;
    }
}

class CarryOver {
public:
    CarryOver(const Document& before, const std::string& polyline,
              const std::unordered_map<std::string, JoinedSegments>& pieces, std::size_t vertexCount)
        : m_before(before), m_polyline(polyline), m_pieces(pieces), m_vertexCount(vertexCount) {}

    bool concerns(const Constraint& constraint) const {
        const bool standsAlone = constraint.members.empty() && constraint.type != ConstraintType::internal;
        return constraint.active && standsAlone &&
               std::any_of(constraint.refs.begin(), constraint.refs.end(),
                           [&](const Place& place) { return m_pieces.contains(place.entity); });
    }

    Constraint carried(Constraint constraint) const {
        // With a third place, an angle is measured between curves: their directions have no meaning.
        const bool isDirection = constraint.type == ConstraintType::angle && constraint.refs.size() < 3;
        for (Place& place : constraint.refs)
            place = isDirection ? direction(place) : moved(place);
        return constraint;
    }

    /// True for a coincidence of a vertex with itself.
    bool isOneVertex(const Constraint& constraint) const {
        return constraint.type == ConstraintType::coincident && vertexOf(constraint.refs[0]) >= 0 &&
               vertexOf(constraint.refs[0]) == vertexOf(constraint.refs[1]);
    }

private:
    Place moved(const Place& place) const {
        const auto piece = m_pieces.find(place.entity);
        if (piece == m_pieces.end())
            return place;
        const JoinedSegments& at = piece->second;
        const auto index = static_cast<std::size_t>(place.index);
        const std::size_t segment = at.first + (at.reversed ? at.count - 1 - index : index);
        return {m_polyline, onSegment(place.kind, at.reversed), static_cast<int>(segment)};
    }

    /// A whole line or segment stands for its direction as its start does, its end for the opposite one.
    Place direction(Place place) const {
        const auto piece = m_pieces.find(place.entity);
        const bool isWhole = place.kind == PlaceKind::whole || place.kind == PlaceKind::segment;
        if (piece != m_pieces.end() && piece->second.reversed && isWhole && !isArc(place))
            place.kind = PlaceKind::start;
        return moved(place);
    }

    bool isArc(const Place& place) const {
        const Shape& shape = m_before.find(place.entity)->shape;
        const auto* polyline = std::get_if<PolylineShape>(&shape);
        return std::holds_alternative<ArcShape>(shape) ||
               (polyline != nullptr && polyline->bulges[static_cast<std::size_t>(place.index)] != 0.0);
    }

    int vertexOf(const Place& place) const {
        if (place.entity != m_polyline ||
            (place.kind != PlaceKind::segmentStart && place.kind != PlaceKind::segmentEnd))
            return -1;
        return (place.index + (place.kind == PlaceKind::segmentEnd ? 1 : 0)) % static_cast<int>(m_vertexCount);
    }

    EntityIndex m_before;
    const std::string& m_polyline;
    const std::unordered_map<std::string, JoinedSegments>& m_pieces;
    std::size_t m_vertexCount;
};

/// Why a constraint of the pieces is not one of the polyline.
std::string reasonOfLoss(const CarryOver& carry, const Constraint& constraint, const Constraint& carried,
                         const std::string& polyline, const EntityIndex& entities) {
    if (carry.isOneVertex(carried))
        return "it ties a vertex of " + polyline + " to itself";
    return faultIn(carried, entities) ? polyline + " cannot have it: " + spokenPlace(constraint.refs.front()) + " is " +
                                            spokenPlace(carried.refs.front()) + " there"
                                      : "it does not hold on " + polyline;
}

}  // namespace

void restoreComposites(const EditContext& context) {
    Drawing& drawing = context.drawing;
    std::vector<Constraint> owners;
    for (const Deletion& deletion : drawing.deletions())
        if (deletion.by == Deletion::By::erasure && deletion.constraint.type == ConstraintType::composite)
            owners.push_back(deletion.constraint);
    for (const Constraint& owner : owners) {
        for (const std::string& member : owner.members)
            if (!drawing.hasConstraint(member))
                drawing.restoreConstraint(member);
        const auto missing = std::find_if(owner.members.begin(), owner.members.end(),
                                          [&](const std::string& member) { return !drawing.hasConstraint(member); });
        if (missing == owner.members.end())
            drawing.addConstraint(owner);
        else
            context.reasons.note(owner.id, "its member " + *missing + " is gone");
    }
}

std::unordered_map<std::string, JoinedSegments> segmentsOf(const std::vector<ChainPiece>& pieces, std::size_t middle,
                                                           const Chain& chain) {
    const auto countOf = [&](std::size_t piece) { return pieces[piece].shape.vertices.size() - 1; };
    std::size_t front = 0;
    for (const ChainLink& link : chain.links)
        front += link.isBefore ? countOf(link.piece) : 0;
    std::size_t back = front + countOf(middle);
    std::unordered_map<std::string, JoinedSegments> segments{{pieces[middle].name, {front, countOf(middle), false}}};
    for (const ChainLink& link : chain.links) {
        const std::size_t count = countOf(link.piece);
        front -= link.isBefore ? count : 0;
        segments[pieces[link.piece].name] = {link.isBefore ? front : back, count, link.isBefore == link.touchesStart};
        back += link.isBefore ? 0 : count;
    }
    return segments;
}

void carryOver(const EditContext& context, const Document& before, const std::string& polyline,
               const std::unordered_map<std::string, JoinedSegments>& pieces) {
    Drawing& drawing = context.drawing;
    std::vector<std::string> names{polyline};
    for (const Entity& entity : before.entities)
        names.push_back(entity.id);
    Document document = drawing.around(names);
    const EntityIndex entities(document);
    const CarryOver carry(before, polyline, pieces,
                          std::get<PolylineShape>(entities.find(polyline)->shape).vertices.size());
    const std::size_t count = document.constraints.size();
    for (const Constraint& constraint : before.constraints) {
        if (drawing.hasConstraint(constraint.id) || !carry.concerns(constraint))
            continue;
        Constraint carried = carry.carried(constraint);
        context.reasons.note(constraint.id, reasonOfLoss(carry, constraint, carried, polyline, entities));
        if (!carry.isOneVertex(carried) && !faultIn(carried, entities))
            document.constraints.push_back(std::move(carried));
    }
    addHolding(drawing, document, count);
    restoreComposites(context);
    drawing.tieCorners(polyline);
}

}  // namespace holdfast::editing
