#include "editing/fates/Fates.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "document/EntityIndex.h"
#include "editing/EditContext.h"
#include "editing/fates/DeletionReasons.h"
#include "editing/fates/Sizes.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

constexpr const char* kAsItWas = "the drawing is as it was without it";
constexpr const char* kMadeByEdit = "made by the edit";

/// Why places have other names; the names themselves are told by the moves.
std::string reasonOfMove(const std::vector<PlaceMove>& moves, const EntityIndex& after) {
    const PlaceMove& move = moves.front();
    const bool isAtEnd = move.to.kind == PlaceKind::start || move.to.kind == PlaceKind::end;
    if (move.from.kind == PlaceKind::whole && isAtEnd)
        return "it is measured between ends now";
    if (move.from.entity == move.to.entity && isAtEnd)
        return "start and end of " + move.from.entity + " have changed places";
    if (move.from.entity == move.to.entity)
        return "the segments of " + move.from.entity + " are counted anew";
    const bool wasSegment = move.from.kind >= PlaceKind::segment && move.to.kind < PlaceKind::segment;
    if (after.find(move.from.entity) == nullptr && !wasSegment)
        return move.from.entity + " became part of " + move.to.entity;
    return "that part of " + move.from.entity + " is " + move.to.entity + " now";
}

std::vector<PlaceMove> movesBetween(const Constraint& was, const Constraint& is) {
    std::vector<PlaceMove> moves;
    for (std::size_t i = 0; i < std::min(was.refs.size(), is.refs.size()); ++i)
        if (!(was.refs[i] == is.refs[i]))
            moves.push_back({was.refs[i], is.refs[i]});
    return moves;
}

/// What goes with a dimension that was calculated.
std::string lostFormula(const Constraint& was) {
    return was.formula.empty() ? std::string() : ", its formula " + was.formula + " is gone";
}

/// How a dimension says another thing than before; empty where it does not. What measured ones read follows from the
/// drawing.
std::string reasonOfChange(const Constraint& was, const Constraint& is) {
    if (was.active != is.active)
        return is.active ? "it is switched on again" : "it is switched off and holds nothing";
    const std::string lost = is.formula.empty() ? lostFormula(was) : "";
    if (was.driving != is.driving)
        return (is.driving ? "it drives the drawing now" : "it is measured now") + lost;
    const bool hasChanged = is.driving && was.value != is.value && was.value && is.value;
    if (!hasChanged && was.formula == is.formula)
        return {};
    const std::string now = is.value ? spoken(spokenValue(is.type, *is.value)) : std::string();
    return (hasChanged ? spoken(spokenValue(was.type, *was.value)) + " -> " : "") + now +
           (is.formula.empty() ? lost : " = " + is.formula);
}

std::unordered_map<std::string_view, const Constraint*> constraintsById(const Document& document) {
    std::unordered_map<std::string_view, const Constraint*> found;
    found.reserve(document.constraints.size());
    for (const Constraint& constraint : document.constraints)
        found.emplace(constraint.id, &constraint);
    return found;
}

/// Without reasons, for a drawing that is as it was at another time.
std::vector<ConstraintOutcome> constraintFates(const Document& before, const Document& after, std::size_t edit,
                                               const DeletionReasons* reasons) {
    const EntityIndex entitiesAfter(after);
    const auto was = constraintsById(before), is = constraintsById(after);
    std::vector<ConstraintOutcome> outcomes;
    for (const Constraint& constraint : before.constraints) {
        const auto now = is.find(constraint.id);
        if (now == is.end()) {
            outcomes.push_back(
                {constraint.id,
                 ConstraintFate::deleted,
                 reasons == nullptr ? kAsItWas : reasons->reasonOf(constraint.id) + lostFormula(constraint),
                 {},
                 edit});
        } else if (std::vector<PlaceMove> moves = movesBetween(constraint, *now->second); !moves.empty()) {
            std::string reason = reasonOfMove(moves, entitiesAfter);
            outcomes.push_back({constraint.id, ConstraintFate::rePointed, std::move(reason), std::move(moves), edit});
        } else if (std::string reason = reasonOfChange(constraint, *now->second); !reason.empty()) {
            if (const std::string own = reasons == nullptr ? "" : reasons->ownReasonOf(constraint.id); !own.empty())
                reason = own;
            outcomes.push_back({constraint.id, ConstraintFate::changed, std::move(reason), {}, edit});
        }
    }
    for (const Constraint& constraint : after.constraints)
        if (was.find(constraint.id) == was.end())
            outcomes.push_back({constraint.id,
                                ConstraintFate::added,
                                (reasons == nullptr ? kMadeByEdit : reasons->reasonOfAdded(constraint.id)) +
                                    (constraint.formula.empty() ? "" : ", = " + constraint.formula),
                                {},
                                edit});
    return outcomes;
}

/// Vertex identifiers are the host's own affair: they come with the first constraint on a segment.
bool isDrawnAlike(const Shape& was, const Shape& is) {
    const auto *before = std::get_if<PolylineShape>(&was), *after = std::get_if<PolylineShape>(&is);
    if (before == nullptr || after == nullptr)
        return was == is;
    return before->vertices == after->vertices && before->bulges == after->bulges && before->closed == after->closed;
}

/// References stand behind the entities; none follows.
void addReferenceFates(const Document& before, const Document& after, std::vector<EntityOutcome>& outcomes) {
    std::unordered_map<std::string_view, const BlockReference*> was, is;
    for (const BlockReference& reference : before.references)
        was.emplace(reference.id, &reference);
    for (const BlockReference& reference : after.references)
        is.emplace(reference.id, &reference);
    for (const BlockReference& reference : before.references) {
        const auto now = is.find(reference.id);
        if (now == is.end())
            outcomes.push_back({reference.id, EntityFate::erased});
        else if (reference != *now->second)
            outcomes.push_back(
                {reference.id, EntityFate::edited, distance(reference.placement.at, now->second->placement.at)});
    }
    for (const BlockReference& reference : after.references)
        if (!was.contains(reference.id))
            outcomes.push_back({reference.id, EntityFate::created});
}

std::vector<EntityOutcome> entityFates(const Document& before, const Document& after,
                                       const std::vector<std::string>& edited) {
    const EntityIndex was(before), is(after);
    const std::unordered_set<std::string_view> byUser(edited.begin(), edited.end());
    std::vector<EntityOutcome> outcomes;
    for (const Entity& entity : before.entities) {
        const Entity* now = is.find(entity.id);
        if (now == nullptr)
            outcomes.push_back({entity.id, EntityFate::erased});
        else if (!isDrawnAlike(entity.shape, now->shape))
            outcomes.push_back({entity.id, byUser.count(entity.id) > 0 ? EntityFate::edited : EntityFate::followed,
                                movement(entity.shape, now->shape), sizeChanges(entity.shape, now->shape)});
    }
    for (const Entity& entity : after.entities)
        if (was.find(entity.id) == nullptr)
            outcomes.push_back({entity.id, EntityFate::created});
    addReferenceFates(before, after, outcomes);
    return outcomes;
}

}  // namespace

std::vector<Vec2> definingPoints(const Shape& shape) {
    struct Visitor {
        static Vec2 on(Vec2 c, double r, double a) { return {c.x + r * std::cos(a), c.y + r * std::sin(a)}; }
        std::vector<Vec2> operator()(const LineShape& s) const { return {s.start, s.end}; }
        std::vector<Vec2> operator()(const ArcShape& s) const {
            return {on(s.centre, s.radius, s.startAngle), on(s.centre, s.radius, s.endAngle), s.centre, {s.radius, 0}};
        }
        std::vector<Vec2> operator()(const CircleShape& s) const { return {s.centre, {s.radius, 0}}; }
        std::vector<Vec2> operator()(const EllipseShape& s) const {
            return {s.centre, s.majorAxis, {s.ratio * std::hypot(s.majorAxis.x, s.majorAxis.y), 0}};
        }
        std::vector<Vec2> operator()(const EllipticalArcShape& s) const {
            const double major = std::hypot(s.majorAxis.x, s.majorAxis.y);
            return {s.centre, s.majorAxis, {s.ratio * major, 0}, {s.startParam * major, 0}, {s.endParam * major, 0}};
        }
        std::vector<Vec2> operator()(const SplineShape& s) const { return s.control; }
        std::vector<Vec2> operator()(const PointShape& s) const { return {s.position}; }
        std::vector<Vec2> operator()(const XlineShape& s) const { return {s.point, s.direction}; }
        std::vector<Vec2> operator()(const RayShape& s) const { return {s.point, s.direction}; }
        std::vector<Vec2> operator()(const PolylineShape& s) const { return s.vertices; }
        std::vector<Vec2> operator()(const TextShape& s) const { return {s.position}; }
    };
    return std::visit(Visitor(), shape);
}

namespace {

std::optional<Vec2> centreOf(const Shape& shape) {
    return std::visit(
        [](const auto& s) -> std::optional<Vec2> {
            if constexpr (requires { s.centre; })
                return s.centre;
            return std::nullopt;
        },
        shape);
}

}  // namespace

double movement(const Shape& before, const Shape& after) {
    if (const auto was = centreOf(before), is = centreOf(after); before.index() != after.index() && was && is)
        return distance(*was, *is);
    const std::vector<Vec2> from = definingPoints(before), to = definingPoints(after);
    double longest = 0.0;
    const std::size_t count = before.index() == after.index() && from.size() == to.size() ? from.size() : 1;
    for (std::size_t i = 0; i < std::min({count, from.size(), to.size()}); ++i)
        longest = std::max(longest, distance(from[i], to[i]));
    return longest;
}

Fates fatesBetween(const Document& before, const Document& after, const std::vector<std::string>& edited,
                   std::size_t edit, const DeletionReasons& reasons) {
    return {constraintFates(before, after, edit, &reasons), entityFates(before, after, edited)};
}

Fates fatesBetween(const Document& before, const Document& after, const std::vector<std::string>& edited,
                   std::size_t edit) {
    return {constraintFates(before, after, edit, nullptr), entityFates(before, after, edited)};
}

Fates fatesOfUndo(const Document& before, const Document& after, std::size_t edit) {
    Fates fates = fatesBetween(before, after, {}, edit);
    for (ConstraintOutcome& outcome : fates.constraints)
        if (outcome.fate == ConstraintFate::added) {
            outcome.fate = ConstraintFate::restored;
            outcome.reason = "the undo brought it back";
        }
    for (EntityOutcome& outcome : fates.entities)
        if (outcome.fate == EntityFate::created)
            outcome.fate = EntityFate::restored;
    return fates;
}

FateReport runReport(const Document& before, const Document& after, const std::vector<EditOutcome>& edits,
                     const std::vector<Fates>& fates) {
    FateReport report{
        .title = {}, .before = before, .after = after, .edits = edits, .constraints = {}, .entities = {}, .solver = {}};
    std::unordered_map<std::string, ConstraintOutcome> last;
    std::vector<std::string> edited;
    for (const Fates& fate : fates) {
        for (const ConstraintOutcome& outcome : fate.constraints)
            last[outcome.constraint] = outcome;
        for (const EntityOutcome& outcome : fate.entities)
            if (outcome.fate == EntityFate::edited)
                edited.push_back(outcome.entity);
    }
    // What counts is the whole run; the single edits know the better reasons and which of them it was.
    report.constraints = constraintFates(before, after, 0, nullptr);
    for (ConstraintOutcome& outcome : report.constraints) {
        const auto known = last.find(outcome.constraint);
        if (known == last.end())
            continue;
        outcome.edit = known->second.edit;
        if (outcome.fate == known->second.fate)
            outcome.reason = known->second.reason;
    }
    report.entities = entityFates(before, after, edited);
    return report;
}

}  // namespace holdfast::editing
