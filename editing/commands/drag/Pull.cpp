#include "editing/commands/drag/Pull.h"

#include <algorithm>
#include <unordered_set>

#include <YxDbConstraints/LvEvaDataConverter.h>

#include "editing/commands/drag/Grips.h"
#include "editing/commands/move/Moving.h"
#include "geometry/Transforms.h"
#include "geometry/curves/Parameters.h"
#include "hosting/DocumentSketch.h"
#include "hosting/Drawing.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/HostEvaluator.h"
#include "hosting/evaluator/HostPull.h"

namespace holdfast::editing {

Pull::Pull(const Drag& edit, Drawing& drawing, const HostEvaluator& evaluator, const Document& document)
    : m_drawing(drawing), m_document(document), m_held(edit.held), m_hold(heldBy(edit, drawing)) {
    YxArray<YxDbObjectId> ids;
    std::size_t constrained = 0;
    for (const std::string& name : m_hold.names) {
        ids.append(drawing.id(name));
        constrained += LvEvaDataConverter::hasAssocConstraint(ids.last()) ? 1 : 0;
    }
    if (constrained == m_hold.names.size())
        takeConstrained(ids, drawing, evaluator);
    else if (constrained == 0)
        takeFree(drawing);
}

void Pull::takeFree(const Drawing& drawing) {
    const std::unordered_set<std::string_view> held(m_hold.names.begin(), m_hold.names.end());
    for (const Entity& entity : m_document.entities)
        if (held.contains(entity.id)) {
            m_free.push_back(entity);
            m_free.back().shape = drawing.shape(entity.id);
        }
}

void Pull::takeConstrained(const YxArray<YxDbObjectId>& ids, const Drawing& drawing, const HostEvaluator& evaluator) {
    refuseTurning(drawing, m_hold);
    YxArray<YxGePoint3d> points;
    for (const Vec2 point : m_hold.pointsIn(drawing))
        points.append({point.x, point.y, 0.0});
    m_pull = evaluator.pull(ids, points);
    m_hasFormulas = !drawing.parameters().empty() || !drawing.calculated().empty();
    std::unordered_set<std::string_view> under;
    for (const Constraint& constraint : m_document.constraints)
        if (constraint.active && !constraint.driving && constraint.value) {
            m_measured.push_back(&constraint);
            for (const Place& place : constraint.refs)
                under.insert(place.entity);
        }
    for (const Entity& entity : m_document.entities)
        if (under.contains(entity.id))
            m_underMeasured.emplace(entity.id, &entity);
}

Pull::~Pull() = default;

std::optional<Glimpse> Pull::by(Vec2 way, const Box& seen) {
    std::optional<std::vector<Entity>> moved = movedBy(way, seen);
    if (!moved)
        return std::nullopt;
    Glimpse glimpse{.edited = m_hold.names, .entities = std::move(*moved), .constraints = {}};
    if (!addMeasured(glimpse))
        return std::nullopt;
    return glimpse;
}

std::optional<std::vector<Entity>> Pull::movedBy(Vec2 way, const Box& seen) const {
    if (m_pull != nullptr)
        return m_pull->movedBy(matrixOf(translation(way)), [&](const Entity& before, const Shape& after) {
            return m_underMeasured.contains(before.id) || boundsOf(before.shape).meets(seen) ||
                   boundsOf(after).meets(seen) ||
                   std::find(m_hold.names.begin(), m_hold.names.end(), before.id) != m_hold.names.end();
        });
    if (m_free.empty())
        return std::nullopt;
    std::vector<Entity> moved;
    for (const Entity& entity : m_free)
        if (Entity after = freeBy(entity, way); after.shape != entity.shape)
            moved.push_back(std::move(after));
    return moved;
}

/// As the host has it after the same drag.
Entity Pull::freeBy(const Entity& entity, Vec2 way) const {
    Entity moved = entity;
    moved.shape = m_hold.grips.empty() ? transformed(entity.shape, translation(way))
                                       : withGripsMoved(entity.shape, m_hold.grips, way);
    refuseUnsound(entity.id, moved.shape);
    const std::unique_ptr<YxDbEntity> copy(static_cast<YxDbEntity*>(m_drawing.entity(entity.id).clone()));
    writeShape(*copy, moved.shape);
    moved.shape = readShape(*copy);
    return moved;
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
