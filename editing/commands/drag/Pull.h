#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "editing/Edit.h"
#include "editing/Glimpse.h"
#include "editing/Uses.h"
#include "editing/commands/drag/Hold.h"
#include "geometry/Box.h"

namespace holdfast::hosting {
class HostEvaluator;
class HostPull;
}  // namespace holdfast::hosting

namespace holdfast::editing {

/// Entities, or a place of one, that a hand pulls about before it lets go: one drag after another from where they are
/// in the drawing, which stays as it is as long as this lives.
class Pull {
public:
    /// Both outlive it. RefusedWord or EditError for a drag that cannot be understood on the drawing. Cost: the
    /// drawing.
    Pull(const Drag& edit, Drawing& drawing, const HostEvaluator& evaluator, const Document& document);
    ~Pull();
    Pull(const Pull&) = delete;
    Pull& operator=(const Pull&) = delete;

    /// The drag holds what is held here.
    bool holds(const Drag& edit) const { return edit.held == m_held; }

    /// What a drag of this way would move, of what lies or would come to lie where somebody looks; what is held is told
    /// anyway. Nothing where only the drag itself tells: where constraints hold it back, or hold some of what is held
    /// and not the rest. Cost: the solve, and what moves; where constraints know nothing of what is held, that alone.
    std::optional<Glimpse> by(Vec2 way, const Box& seen);

private:
    void takeFree(const Drawing& drawing);
    void takeConstrained(const YxArray<YxDbObjectId>& ids, const Drawing& drawing, const HostEvaluator& evaluator);
    std::optional<std::vector<Entity>> movedBy(Vec2 way, const Box& seen) const;
    Entity freeBy(const Entity& entity, Vec2 way) const;
    bool addMeasured(Glimpse& glimpse) const;
    Document measuredOn(const std::vector<Entity>& moved) const;

    const Drawing& m_drawing;
    const Document& m_document;
    Drag::Held m_held;
    Hold m_hold;
    std::unique_ptr<HostPull> m_pull;  ///< null where constraints know nothing of what is held
    std::vector<Entity> m_free;        ///< what is held, if none of it is constrained; nobody follows then
    bool m_hasFormulas = false;
    std::vector<const Constraint*> m_measured;
    std::unordered_map<std::string_view, const Entity*> m_underMeasured;
};

}  // namespace holdfast::editing
