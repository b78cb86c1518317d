#pragma once

#include <memory>
#include <unordered_map>

#include "workbench/evaluator/Drag.h"
#include "workbench/evaluator/EditDemand.h"
#include "workbench/evaluator/HostFigure.h"

namespace holdfast {

/// Edited entities that follow a transform step by step, from where they were when the drag began, and the previews of
/// what moves with them.
class HostDrag {
public:
    HostDrag(const Drawing& drawing, const AssocConstraintHeader& header);
    HostDrag(const HostDrag&) = delete;
    HostDrag& operator=(const HostDrag&) = delete;

    /// Solves for the transform since the beginning. A failed step leaves the one before it in place.
    SolveResult step(const YxGeMatrix3d& transform);

    /// How far the last step stayed behind the transform, at worst.
    double miss() const { return m_miss; }
    const std::vector<int>& edited() const { return m_edited; }
    /// The drawing as it was when the drag began, and the figure as the last step has left it.
    const HostFigure& host() const { return m_host; }

    /// Puts a copy of everything that has moved into the header's list of what is drawn, edited entities first. The
    /// header owns the copies and they are used again in the next step.
    void preview(const Drawing& drawing, AssocConstraintHeader& header);

private:
    void take(const std::vector<double>& values, double miss);

    HostFigure m_host;
    std::vector<int> m_edited;
    std::vector<int> m_handles;
    Figure m_dragged;  ///< what the session moves
    std::unique_ptr<DragSession> m_session;
    std::unordered_map<int, YxDbEntity*> m_previews;
    double m_miss = 0.0;
};

}  // namespace holdfast
