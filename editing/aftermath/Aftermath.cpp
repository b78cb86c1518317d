#include "editing/aftermath/Aftermath.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "editing/EditContext.h"
#include "editing/EditError.h"
#include "editing/Refusal.h"
#include "editing/fates/Fates.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

/// As kHolds, for a constraint that holds without doubt: what was on the brink before an edit may be a little beyond
/// after it.
constexpr double kHeldSurely = 1e-7;

/// Units of length from the origin. There the digits of a number end at a ten-thousandth of a unit, and beyond it what
/// holds and what is free could not be told any more.
constexpr double kFarthest = 1e12;

bool isBoundless(const Shape& shape) {
    const std::vector<Vec2> points = definingPoints(shape);
    return std::any_of(points.begin(), points.end(), [](Vec2 point) {
        return !(std::abs(point.x) <= kFarthest) || !(std::abs(point.y) <= kFarthest);
    });
}

/// The module judges a spline by its ends, and where it is cut by its control points. What holds on the whole of one it
/// leaves alone, and all control points of an outermost span move when the spline is led on.
bool isOnSpline(const Constraint& constraint, const EntityIndex& entities) {
    return std::any_of(constraint.refs.begin(), constraint.refs.end(), [&](const Place& place) {
        const bool mayBeFalse = place.kind == PlaceKind::whole || place.kind == PlaceKind::control;
        const Entity* entity = mayBeFalse ? entities.find(place.entity) : nullptr;
        return entity != nullptr && std::holds_alternative<SplineShape>(entity->shape);
    });
}

/// Numbers of the constraints with an entity that differs from before, of those that a test picks.
template <class Test>
std::vector<std::size_t> constraintsOnChanged(const Document& before, const Document& now, const Test& test) {
    std::unordered_set<std::string_view> changed;
    const EntityIndex was(before);
    for (const Entity& entity : now.entities)
        if (const Entity* known = was.find(entity.id); known == nullptr || !(known->shape == entity.shape))
            changed.insert(entity.id);
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < now.constraints.size(); ++i) {
        const Constraint& constraint = now.constraints[i];
        if (constraint.active && test(constraint) &&
            std::any_of(constraint.refs.begin(), constraint.refs.end(),
                        [&](const Place& place) { return changed.contains(place.entity); }))
            numbers.push_back(i);
    }
    return numbers;
}

/// Numbers of constraints by their ids.
std::unordered_map<std::string_view, std::size_t> numbersById(const Document& document) {
    std::unordered_map<std::string_view, std::size_t> numbers;
    for (std::size_t i = 0; i < document.constraints.size(); ++i)
        numbers.emplace(document.constraints[i].id, i);
    return numbers;
}

/// Those of some constraints that held before and do not now.
template <class Take>
void forBroken(const EditedPart& part, const std::vector<std::size_t>& doubtful, double held, double holds,
               const Take& take) {
    if (doubtful.empty())
        return;
    const auto numberBefore = numbersById(part.before);
    const DocumentSketch was(part.before), is(part.after);
    for (const std::size_t number : doubtful) {
        const Constraint& constraint = part.after.constraints[number];
        const auto known = numberBefore.find(constraint.id);
        if (known != numberBefore.end() && was.shortfallOf(known->second) <= held * part.sizeBefore &&
            !(is.shortfallOf(number) <= holds * part.sizeAfter))
            take(constraint);
    }
}

/// Adds the driving dimensions that say another thing than before, wherever they are.
void addRevalued(const EditedPart& part, std::vector<std::size_t>& numbers) {
    const auto numberBefore = numbersById(part.before);
    for (std::size_t i = 0; i < part.after.constraints.size(); ++i) {
        const Constraint& now = part.after.constraints[i];
        const auto known = numberBefore.find(now.id);
        if (now.active && now.driving && known != numberBefore.end() &&
            part.before.constraints[known->second].value != now.value)
            numbers.push_back(i);
    }
}

/// A fixed constraint has no place of its own: it holds wherever its point is, and is true as long as that stays.
bool isElsewhere(const Constraint& was, const EntityIndex& before, const Constraint& is, const EntityIndex& after,
                 double same) {
    for (std::size_t i = 0; i < std::min(was.refs.size(), is.refs.size()); ++i) {
        const Entity *from = before.find(was.refs[i].entity), *to = after.find(is.refs[i].entity);
        const auto there = from == nullptr ? std::nullopt : pointAt(from->shape, was.refs[i]);
        const auto here = to == nullptr ? std::nullopt : pointAt(to->shape, is.refs[i]);
        if (there && here && distance(*there, *here) > same)
            return true;
    }
    return false;
}

template <class Take>
void forElsewhere(const EditedPart& part, const std::vector<std::size_t>& doubtful, const Take& take) {
    const EntityIndex before(part.before), after(part.after);
    const auto numberBefore = numbersById(part.before);
    for (const std::size_t number : doubtful) {
        const Constraint& constraint = part.after.constraints[number];
        const auto known = numberBefore.find(constraint.id);
        if (constraint.type == ConstraintType::fixed && known != numberBefore.end() &&
            isElsewhere(part.before.constraints[known->second], before, constraint, after, kHolds * part.sizeAfter))
            take(constraint);
    }
}

/// A dimension of whole curves tells what it measures now; of points, the way that they went is told.
void noteMeasure(DeletionReasons& reasons, const EditedPart& part, const Constraint& constraint) {
    const bool isOfPoints = std::any_of(constraint.refs.begin(), constraint.refs.end(), [](const Place& place) {
        return place.kind != PlaceKind::whole && place.kind != PlaceKind::segment;
    });
    if (!constraint.value || isOfPoints)
        return;
    const auto number = static_cast<std::size_t>(&constraint - part.after.constraints.data());
    const auto told = [&](double value) { return spoken(spokenValue(constraint.type, value)); };
    reasons.note(constraint.id, "it measures " + told(DocumentSketch(part.after).measured(number)) + " now, not " +
                                    told(*constraint.value));
}

void dropFalse(EditContext& context, const EditedPart& part) {
    const EntityIndex entities(part.after);
    const auto isJudgedAnew = [&](const Place& place) {
        return std::find(context.judgedAnew.begin(), context.judgedAnew.end(), place.entity) !=
               context.judgedAnew.end();
    };
    const std::vector<std::size_t> doubtful =
        constraintsOnChanged(part.before, part.after, [&](const Constraint& constraint) {
            return constraint.driving &&
                   (!traitsOf(constraint.type).isJudgedByModule || isOnSpline(constraint, entities) ||
                    std::any_of(constraint.refs.begin(), constraint.refs.end(), isJudgedAnew));
        });
    forBroken(part, doubtful, kHolds, kHolds, [&](const Constraint& constraint) {
        noteMeasure(context.reasons, part, constraint);
        context.drawing.removeConstraint(constraint.id);
    });
    forElsewhere(part, doubtful,
                 [&](const Constraint& constraint) { context.drawing.removeConstraint(constraint.id); });
}

}  // namespace

void refreshMeasures(Drawing& drawing, const EditedPart& part) {
    const Document& now = part.after;
    const std::vector<std::size_t> followers = constraintsOnChanged(part.before, now, [](const Constraint& constraint) {
        return !constraint.driving && constraint.value.has_value();
    });
    if (followers.empty())
        return;
    const DocumentSketch sketch(now);
    for (const std::size_t number : followers)
        drawing.setMeasure(now.constraints[number].id, sketch.measured(number));
}

void settleOwnConstraints(EditContext& context, const EditedPart& part) {
    dropFalse(context, part);
    refreshMeasures(context.drawing, part);
}

void refuseBoundless(const EditedPart& part, const std::string& lengthUnit) {
    const EntityIndex was(part.before);
    for (const Entity& entity : part.after.entities)
        if (const Entity* before = was.find(entity.id);
            isBoundless(entity.shape) && (before == nullptr || !isBoundless(before->shape)))
            throw EditError(entity.id + " would reach farther than " + spoken(kFarthest) + " " + lengthUnit +
                            ", where numbers have no digits left for what is near; choose smaller values");
}

void refuseBroken(const EditedPart& part) {
    std::vector<std::size_t> kept =
        constraintsOnChanged(part.before, part.after, [](const Constraint& constraint) { return constraint.driving; });
    addRevalued(part, kept);
    forBroken(part, kept, kHeldSurely, kHolds, [](const Constraint& constraint) {
        throw EditError("after it " + spokenConstraint(constraint) +
                        " would be kept and would not hold; delete it first, or choose another value");
    });
}

}  // namespace holdfast::editing
