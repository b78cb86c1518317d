#include "editing/Aftermath.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "document/EntityIndex.h"
#include "geometry/Tolerances.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::editing {

namespace {

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
std::vector<int> constraintsOnChanged(const Document& before, const Document& now, const Test& test) {
    std::unordered_set<std::string_view> changed;
    const EntityIndex was(before);
    for (const Entity& entity : now.entities)
        if (const Entity* known = was.find(entity.id); known == nullptr || !(known->shape == entity.shape))
            changed.insert(entity.id);
    std::vector<int> numbers;
    for (std::size_t i = 0; i < now.constraints.size(); ++i) {
        const Constraint& constraint = now.constraints[i];
        if (constraint.active && test(constraint) &&
            std::any_of(constraint.refs.begin(), constraint.refs.end(),
                        [&](const Place& place) { return changed.contains(place.entity); }))
            numbers.push_back(static_cast<int>(i));
    }
    return numbers;
}

/// How far one constraint is from holding; infinitely when its elements cannot have it any more.
double shortfallOf(const SketchData& sketch, int constraint) {
    try {
        return violationsOf(Extract(sketch, {&constraint, 1}).sketch()).front();
    } catch (const SketchError&) {
        return std::numeric_limits<double>::infinity();
    }
}

void dropFalse(Drawing& drawing, const Document& before, const Document& now) {
    const EntityIndex entities(now);
    const std::vector<int> doubtful = constraintsOnChanged(before, now, [&](const Constraint& constraint) {
        return constraint.driving && (!traitsOf(constraint.type).isJudgedByModule || isOnSpline(constraint, entities));
    });
    if (doubtful.empty())
        return;
    std::unordered_map<std::string_view, int> numberBefore;
    for (std::size_t i = 0; i < before.constraints.size(); ++i)
        numberBefore.emplace(before.constraints[i].id, static_cast<int>(i));
    const SketchData was = sketchFrom(before), is = sketchFrom(now);
    const double heldWithin = kHolds * was.size(), holdsWithin = kHolds * is.size();
    for (const int number : doubtful) {
        const std::string& id = now.constraints[static_cast<std::size_t>(number)].id;
        const auto known = numberBefore.find(id);
        if (known != numberBefore.end() && shortfallOf(was, known->second) <= heldWithin &&
            shortfallOf(is, number) > holdsWithin)
            drawing.removeConstraint(id);
    }
}

void refreshMeasures(Drawing& drawing, const Document& before, const Document& now) {
    const std::vector<int> followers = constraintsOnChanged(
        before, now, [](const Constraint& constraint) { return !constraint.driving && constraint.value.has_value(); });
    if (followers.empty())
        return;
    const SketchData sketch = sketchFrom(now);
    for (const int number : followers)
        drawing.setMeasure(now.constraints[static_cast<std::size_t>(number)].id, measured(sketch, number));
}

}  // namespace

void settleOwnConstraints(Drawing& drawing, const Document& before) {
    const Document now = drawing.document();
    dropFalse(drawing, before, now);
    refreshMeasures(drawing, before, now);
}

}  // namespace holdfast::editing
