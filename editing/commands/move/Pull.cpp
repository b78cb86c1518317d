#include "editing/commands/move/Pull.h"

#include <algorithm>
#include <unordered_set>

#include <YxDbConstraints/LvEvaDataConverter.h>

#include "editing/commands/move/Moving.h"
#include "hosting/DocumentSketch.h"
#include "hosting/evaluator/HostEvaluator.h"
#include "hosting/evaluator/HostPull.h"

namespace holdfast::editing {

Pull::Pull(const Drag& edit, Drawing& drawing, const HostEvaluator& evaluator, const Document& document)
    : m_document(document), m_held(edit.held), m_hold(heldBy(edit, drawing)) {
    refuseTurning(drawing, m_hold);
    YxArray<YxDbObjectId> ids;
    for (const std::string& name : m_hold.names) {
        ids.append(drawing.id(name));
        if (!LvEvaDataConverter::hasAssocConstraint(ids.last()))
            return;
    }
    YxArray<YxGePoint3d> points;
    for (const Vec2 point : m_hold.pointsIn(drawing))
        points.append({point.x, point.y, 0.0});
    m_pull = evaluator.pull(ids, points);
    m_hasFormulas = !drawing.parameters().empty() || !drawing.calculated().empty();
    std::unordered_set<std::string_view> under;
    for (const Constraint& constraint : document.constraints)
        if (constraint.active && !constraint.driving && constraint.value) {
            m_measured.push_back(&constraint);
            for (const Place& place : constraint.refs)
                under.insert(place.entity);
        }
    for (const Entity& entity : document.entities)
        if (under.contains(entity.id))
            m_underMeasured.emplace(entity.id, &entity);
}

Pull::~Pull() = default;

std::optional<Glimpse> Pull::by(Vec2 way) {
    std::optional<std::vector<Entity>> moved;
    if (m_pull != nullptr)
        moved = m_pull->movedBy(matrixOf(translation(way)));
    if (!moved)
        return std::nullopt;
    Glimpse glimpse{.edited = m_hold.names, .entities = std::move(*moved), .constraints = {}};
    if (!addMeasured(glimpse))
        return std::nullopt;
    return glimpse;
}

/// False where formulas may lead the drawing on from what is measured.
bool Pull::addMeasured(Glimpse& glimpse) const {
    if (m_measured.empty())
        return true;
    const Document measured = measuredOn(glimpse.entities);
    if (measured.constraints.empty())
        return true;
    if (m_hasFormulas)
        return false;
    const DocumentSketch sketch(measured);
    for (std::size_t i = 0; i < measured.constraints.size(); ++i) {
        Constraint& dimension = glimpse.constraints.emplace_back(measured.constraints[i]);
        dimension.value = sketch.measured(i);
    }
    return true;
}

/// The measured dimensions on what moves, with all that they stand on.
Document Pull::measuredOn(const std::vector<Entity>& moved) const {
    std::unordered_map<std::string_view, const Entity*> now;
    for (const Entity& entity : moved)
        if (m_underMeasured.contains(entity.id))
            now.emplace(entity.id, &entity);
    Document document;
    std::unordered_set<std::string_view> present;
    for (const Constraint* constraint : m_measured) {
        if (std::none_of(constraint->refs.begin(), constraint->refs.end(),
                         [&](const Place& place) { return now.contains(place.entity); }))
            continue;
        document.constraints.push_back(*constraint);
        for (const Place& place : constraint->refs)
            if (present.insert(place.entity).second) {
                const auto found = now.find(place.entity);
                document.entities.push_back(found != now.end() ? *found->second : *m_underMeasured.at(place.entity));
            }
    }
    return document;
}

}  // namespace holdfast::editing
