#include "editing/ties/CarriedConstraints.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <unordered_set>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/ties/CarriedPlaces.h"
#include "editing/ties/Contacts.h"
#include "editing/ties/EndPlaces.h"
#include "editing/ties/StandIns.h"

namespace holdfast::editing {

namespace {

bool isCurvePlace(const Place& place) {
    return place.kind == PlaceKind::whole || place.kind == PlaceKind::segment;
}

/// Kinds that read nothing of a place but where it is: any other place in the same point will do.
bool readsPointsOnly(const Constraint& constraint) {
    switch (constraint.type) {
        case ConstraintType::coincident:
        case ConstraintType::pointOnCurve:
        case ConstraintType::fixed:
        case ConstraintType::horizontal:
        case ConstraintType::vertical:
        case ConstraintType::symmetric:
        case ConstraintType::midpoint:
        case ConstraintType::distance:
        case ConstraintType::distanceX:
        case ConstraintType::distanceY:
            return true;
        default:
            return false;
    }
}

/// True for what would say something of an entity and itself.
bool namesOneTwice(const Constraint& constraint) {
    for (std::size_t i = 0; i < constraint.refs.size(); ++i)
        for (std::size_t j = i + 1; j < constraint.refs.size(); ++j) {
            const Place &a = constraint.refs[i], &b = constraint.refs[j];
            if (a == b || (a.entity == b.entity && (isCurvePlace(a) || isCurvePlace(b))))
                return true;
        }
    return false;
}

class Carrier {
public:
    explicit Carrier(const TieScene& scene) : m_scene(scene), m_places(scene), m_standIns(scene, m_places) {}

    std::optional<Tie> carried(const Constraint& was) {
        Tie tie{was};
        for (Place& place : tie.constraint.refs) {
            const std::optional<Place> now = placeNow(was, place);
            if (!now)
                return {};
            noteCorner(tie, place, *now);
            place = *now;
        }
        return tie;
    }

    /// A driving length between the outer ends of what is left.
    std::optional<Tie> betweenOuterEnds(const Constraint& was) {
        if (was.type != ConstraintType::distance || was.refs.size() != 1)
            return {};
        const Place& line = was.refs.front();
        const Shape* shape = m_scene.before(line.entity);
        if (shape == nullptr || !std::holds_alternative<LineShape>(curveOf(*shape, line)))
            return {};
        const bool isSegment = isSegmentPlace(line);
        const auto first =
            pointThere({line.entity, isSegment ? PlaceKind::segmentStart : PlaceKind::start, line.index});
        const auto second = pointThere({line.entity, isSegment ? PlaceKind::segmentEnd : PlaceKind::end, line.index});
        if (!first || !second || *first == *second)
            return {};
        Tie tie{was, "it is measured between " + spokenPlace(*first) + " and " + spokenPlace(*second) + " now"};
        tie.constraint.refs = {*first, *second};
        return tie;
    }

    /// With others in the places of those that have moved away: what stood in the same point, or was as long.
    std::optional<Tie> withStandIns(const Constraint& was) {
        const bool isOfSize =
            was.type == ConstraintType::equal || (was.type == ConstraintType::distance && was.refs.size() == 1);
        if (!isOfSize && !readsPointsOnly(was))
            return {};
        Tie tie{was};
        for (Place& place : tie.constraint.refs) {
            const std::optional<Place> now = isOfSize ? sizeThere(place) : standInOrSame(was, place);
            if (!now)
                return {};
            if (isOfSize ? !m_scene.isUnchanged(place.entity) : m_scene.pointBefore(place) && !m_places.unmoved(place))
                tie.reason += (tie.reason.empty() ? "" : ", ") + spokenPlace(*now) +
                              (isOfSize ? " was equal to " : " stood in one point with ") + spokenPlace(place);
            place = *now;
        }
        return tie.reason.empty() || namesOneTwice(tie.constraint) ? std::nullopt : std::optional(tie);
    }

    /// An end that was in one point with another lies on it where that has been led on through the point.
    std::optional<Tie> onCurveOf(const Constraint& was) {
        const bool isTangent = was.type == ConstraintType::tangent;
        if ((!isTangent && was.type != ConstraintType::coincident) || was.refs.size() != 2)
            return {};
        for (const std::size_t moved : {0u, 1u}) {
            const Place &gone = was.refs[moved], &other = was.refs[1 - moved];
            const std::optional<Place> stays = m_scene.pointBefore(gone) ? m_places.unmoved(other) : std::nullopt;
            if (!stays || m_places.unmoved(gone))
                continue;
            const Place curve{gone.entity, isSegmentPlace(gone) ? PlaceKind::segment : PlaceKind::whole, gone.index};
            const std::optional<Place> on = m_places.through(curve, *m_scene.pointBefore(other));
            if (!on || on->entity == stays->entity)
                continue;
            Tie tie{was, spokenEnd(*stays) + " lies on " + spokenPlace(*on) + " now"};
            tie.constraint.type = isTangent ? ConstraintType::tangent : ConstraintType::pointOnCurve;
            tie.constraint.refs = {*stays, *on};
            return tie;
        }
        return {};
    }

    /// The place of a curve on which a constraint has its contact, where that lies on another piece.
    std::optional<Place> otherPiece(const Constraint& constraint, const Place& curve) {
        const std::optional<Vec2> contact = contactNow(constraint);
        const Shape* shape = m_scene.now(curve.entity);
        if (!contact || shape == nullptr || m_scene.passes(curveOf(*shape, curve), *contact))
            return {};
        return m_places.through(curve, *contact);
    }

private:
    static bool hasContact(ConstraintType type) {
        return type == ConstraintType::pointOnCurve || type == ConstraintType::tangent;
    }

    /// Where the constraint's curves touch, or its point lies.
    template <class ShapeOf>
    std::optional<Vec2> contact(const Constraint& constraint, const ShapeOf& shapeOf) const {
        if (!hasContact(constraint.type) || constraint.refs.size() < 2)
            return {};
        for (const Place& place : constraint.refs)
            if (const Shape* shape = shapeOf(place.entity))
                if (const std::optional<Vec2> point = pointAt(*shape, place))
                    return point;
        const Shape *a = shapeOf(constraint.refs[0].entity), *b = shapeOf(constraint.refs[1].entity);
        if (a == nullptr || b == nullptr)
            return {};
        return contactOf(curveOf(*a, constraint.refs[0]), curveOf(*b, constraint.refs[1]));
    }
    std::optional<Vec2> contactBefore(const Constraint& constraint) const {
        return contact(constraint, [&](const std::string& name) { return m_scene.before(name); });
    }
    std::optional<Vec2> contactNow(const Constraint& constraint) const {
        return contact(constraint, [&](const std::string& name) { return m_scene.now(name); });
    }

    /// What is where the point was: the place itself, or one that stands in for it.
    std::optional<Place> pointThere(const Place& place) {
        const std::optional<Place> there = m_places.unmoved(place);
        return there ? there : m_standIns.forPoint(place);
    }

    std::optional<Place> sizeThere(const Place& curve) {
        return m_scene.isUnchanged(curve.entity) ? std::optional(curve) : m_standIns.forCurve(curve);
    }

    std::optional<Place> standInOrSame(const Constraint& was, const Place& place) {
        return m_scene.pointBefore(place) ? pointThere(place) : placeNow(was, place);
    }

    std::optional<Place> placeNow(const Constraint& was, const Place& place) {
        const Shape* shape = m_scene.before(place.entity);
        if (shape == nullptr)
            return {};
        if (pointAt(*shape, place)) {
            const std::optional<Place> there = m_places.unmoved(place);
            // A point that is held where it is holds nothing elsewhere.
            return there || was.type == ConstraintType::fixed ? there : m_places.renamed(place);
        }
        if (was.type == ConstraintType::fixed && !m_scene.isUnchanged(place.entity))
            return {};
        if (isCurvePlace(place) && hasContact(was.type) && !m_scene.isUnchanged(place.entity))
            return withContact(was, place, *shape);
        return m_places.renamed(place);
    }

    /// Of a contact on the curve's prolongation every piece has as much.
    std::optional<Place> withContact(const Constraint& was, const Place& place, const Shape& shape) {
        const std::optional<Vec2> contact = contactBefore(was);
        if (!contact)
            return {};
        return m_scene.passes(curveOf(shape, place), *contact) ? m_places.through(place, *contact)
                                                               : m_places.renamed(place);
    }

    void noteCorner(Tie& tie, const Place& was, const Place& now) const {
        if (m_scene.keptCorner() == now.entity)
            tie.reason = "the corner that " + was.entity + " had is " + now.entity + " now";
    }

    const TieScene& m_scene;
    CarriedPlaces m_places;
    StandIns m_standIns;
};

/// Composites hold nothing themselves. What is only measured ties nothing.
bool mayBeCarried(const TieScene& scene, const Deletion& deletion) {
    const Constraint& constraint = deletion.constraint;
    const bool isErased = deletion.by == Deletion::By::erasure && scene.piecesOf(deletion.at.entity).empty();
    return constraint.active && constraint.driving && !constraint.implied && !ownsMembers(constraint.type) &&
           !isErased && !scene.drawing().hasConstraint(constraint.id);
}

using Way = std::optional<Tie> (Carrier::*)(const Constraint& was);

/// All that was deleted and can be carried on in some ways.
std::vector<Tie> carriedIn(const TieScene& scene, std::initializer_list<Way> ways) {
    Carrier carrier(scene);
    std::vector<Tie> ties;
    std::unordered_set<std::string> seen;
    for (const Deletion& deletion : scene.drawing().deletions())
        if (mayBeCarried(scene, deletion) && seen.insert(deletion.constraint.id).second)
            for (const Way way : ways)
                if (std::optional<Tie> tie = (carrier.*way)(deletion.constraint))
                    ties.push_back(std::move(*tie));
    return ties;
}

}  // namespace

std::vector<Tie> carriedConstraints(const TieScene& scene) {
    return carriedIn(scene, {&Carrier::carried, &Carrier::betweenOuterEnds});
}

std::vector<Tie> constraintsOfStandIns(const TieScene& scene) {
    return carriedIn(scene, {&Carrier::withStandIns, &Carrier::onCurveOf});
}

std::vector<Tie> rePointedConstraints(const TieScene& scene) {
    std::unordered_set<std::string> cut;
    for (const std::string& curve : scene.editedCurves())
        if (const std::vector<std::string> pieces = scene.piecesOf(curve); pieces.size() > 1)
            cut.insert(pieces.begin(), pieces.end());
    Carrier carrier(scene);
    std::vector<Tie> ties;
    for (const Constraint& constraint : scene.part().after.constraints)
        for (std::size_t i = 0; i < constraint.refs.size(); ++i) {
            const Place& place = constraint.refs[i];
            if (!constraint.active || !constraint.driving || !isCurvePlace(place) || !cut.contains(place.entity))
                continue;
            if (const std::optional<Place> other = carrier.otherPiece(constraint, place)) {
                Tie tie{constraint};
                tie.constraint.refs[i] = *other;
                ties.push_back(std::move(tie));
            }
        }
    return ties;
}

}  // namespace holdfast::editing
