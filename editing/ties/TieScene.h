#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "document/DrawingChange.h"
#include "document/EntityIndex.h"
#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "editing/fates/EditedCurves.h"

namespace holdfast::editing {

/// What an edit has done, as those see it who propose ties. Refers to what it is made of, all of which stays meanwhile.
class TieScene {
public:
    TieScene(const EditContext& context, const EditedPart& part);

    /// The shape of an entity before the edit and as it is now; null where there is none.
    const Shape* before(const std::string& name) const;
    const Shape* now(const std::string& name) const;
    /// It was there before the edit, and is where and as it was.
    bool isUnchanged(const std::string& name) const;
    /// Where a place was; nothing for one that is no point.
    std::optional<Vec2> pointBefore(const Place& place) const;
    /// The curves that a command had the module judge, by name.
    const std::vector<std::string>& editedCurves() const { return m_editedCurves; }
    /// What is left of an entity: one that nobody cut is left itself. The first keeps the name, if any does.
    std::vector<std::string> piecesOf(const std::string& name) const;
    /// Entities that the edit has made and that are no pieces of a curve.
    const std::vector<std::string>& bridges() const { return m_bridges; }
    /// The point that stands for the corner which a fillet has rounded, if it was to be kept.
    const std::optional<std::string>& keptCorner() const { return m_context.keptCorner; }

    /// Entities and the copies that the edit has made of them to be tied to them.
    const std::vector<std::pair<std::string, std::string>>& copies() const { return m_context.copies; }

    const EditedPart& part() const { return m_part; }
    Drawing& drawing() const { return m_context.drawing; }

    /// Within this, two points are one for a tie.
    double near() const { return m_near; }
    bool isSame(Vec2 a, Vec2 b) const { return distance(a, b) <= m_near; }
    /// True when a curve passes through the point, as far as a choice between pieces needs it.
    bool passes(const Shape& curve, Vec2 point) const;

private:
    const EditContext& m_context;
    const EditedPart& m_part;
    EntityIndex m_before, m_after;
    double m_near;
    std::vector<std::string> m_editedCurves, m_bridges;
    mutable std::unordered_map<std::string, std::optional<Shape>> m_now;  ///< what was asked for
};

}  // namespace holdfast::editing
