#include "editing/ties/TieScene.h"

#include <algorithm>

#include "document/Places.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"

namespace holdfast::editing {

TieScene::TieScene(const EditContext& context, const EditedPart& part)
    : m_context(context),
      m_part(part),
      m_before(part.before),
      m_after(part.after),
      m_near(kSamePoint * part.sizeAfter) {
    std::unordered_set<std::string_view> pieces;
    for (const auto& [name, curve] : context.reasons.editedCurves()) {
        m_editedCurves.push_back(name);
        pieces.insert(curve.left.begin(), curve.left.end());
    }
    std::sort(m_editedCurves.begin(), m_editedCurves.end());
    for (const Entity& entity : part.after.entities)
        if (before(entity.id) == nullptr && !pieces.contains(entity.id))
            m_bridges.push_back(entity.id);
}

const Shape* TieScene::before(const std::string& name) const {
    const Entity* entity = m_before.find(name);
    if (entity != nullptr)
        return &entity->shape;
    // What the edit has left alone is as it was.
    return m_after.find(name) != nullptr ? nullptr : now(name);
}

const Shape* TieScene::now(const std::string& name) const {
    const auto [known, isNew] = m_now.try_emplace(name);
    if (isNew && !drawing().id(name).isNull())
        known->second = drawing().shape(name);
    return known->second ? &*known->second : nullptr;
}

bool TieScene::isUnchanged(const std::string& name) const {
    const Shape *was = before(name), *is = now(name);
    return was != nullptr && is != nullptr && *was == *is;
}

std::optional<Vec2> TieScene::pointBefore(const Place& place) const {
    const Shape* shape = before(place.entity);
    return shape == nullptr ? std::nullopt : pointAt(*shape, place);
}

std::vector<std::string> TieScene::piecesOf(const std::string& name) const {
    const EditedCurves& edited = m_context.reasons.editedCurves();
    const auto found = edited.find(name);
    std::vector<std::string> pieces = found == edited.end() ? std::vector{name} : found->second.left;
    std::erase_if(pieces, [&](const std::string& piece) { return now(piece) == nullptr; });
    return pieces;
}

bool TieScene::passes(const Shape& curve, Vec2 point) const {
    return nearestOn(curve, point).distance <= kHolds * m_part.sizeAfter;
}

}  // namespace holdfast::editing
