#pragma once

#include <memory>
#include <unordered_map>

#include "hosting/Uses.h"
#include "hosting/evaluator/EditRequest.h"
#include "hosting/evaluator/HostSketch.h"
#include "solver/src/solving/Drag.h"

namespace holdfast::hosting {

/// Edited entities that follow a transform step by step, from where they were when the drag began, and the previews of
/// what moves with them. Where the header lists points, the user holds the edited entities at these only: the points
/// follow the transform as far as the constraints let them, and the rest follows the points.
///
/// Looks at the surroundings of the edited entities, and from the first step that moves what lies farther away on at
/// all that hangs on them.
class HostDrag {
public:
    /// The names are those of the edited entities and of all that may not hold.
    HostDrag(Drawing& drawing, const AssocConstraintHeader& header, std::vector<std::string> names);
    HostDrag(const HostDrag&) = delete;
    HostDrag& operator=(const HostDrag&) = delete;

    /// Solves for the transform since the beginning. A failed step leaves the one before it in place.
    SolveResult step(const YxGeMatrix3d& transform);

    /// Takes the little away by which a drag step gives way: where the constraints let the last step be met, it is met
    /// to the last digit.
    void land(const YxGeMatrix3d& transform);

    /// How far the last step stayed behind the transform, at worst.
    double miss() const { return m_miss; }
    const std::vector<int>& edited() const { return m_edited; }
    /// The drawing as it was when the drag began, and the sketch as the last step has left it.
    const HostSketch& host() const { return m_host; }

    /// Puts a copy of everything that has moved into the header's list of what is drawn, edited entities first. The
    /// header owns the copies and they are used again in the next step.
    void preview(const Drawing& drawing, AssocConstraintHeader& header);

private:
    void begin();
    SolveResult stepWithin(const YxGeMatrix3d& transform);
    EditRequest demandFor(const YxGeMatrix3d& transform) const;
    void take(const std::vector<double>& values, double miss);

    Drawing& m_drawing;
    std::vector<std::string> m_names;
    YxArray<YxDbObjectId> m_editedIds;
    YxArray<YxGePoint3d> m_points;
    HostSketch m_host;
    std::vector<int> m_edited;
    std::vector<int> m_held;  ///< the first of each two coordinates of a held point; empty: all of the edited is held
    SketchData m_dragged;     ///< what the session moves
    std::unique_ptr<DragSession> m_session;
    std::unordered_map<int, YxDbEntity*> m_previews;
    double m_miss = 0.0;
};

}  // namespace holdfast::hosting
