#include "hosting/evaluator/HostPull.h"

#include <utility>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxbase/YxGeTol.h>

#include "hosting/evaluator/HostDrag.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

HostPull::HostPull(Drawing& drawing, std::unique_ptr<AssocConstraintHeader> header, std::vector<std::string> names)
    : m_drawing(drawing),
      m_header(std::move(header)),
      m_names(std::move(names)),
      m_near(std::make_unique<HostDrag>(drawing, *m_header, m_names)) {}

HostPull::~HostPull() = default;

/// Null where it would not be done as it is asked for.
HostDrag* HostPull::placed(const YxGeMatrix3d& transform) {
    if (m_near->hasBroken())
        return nullptr;
    HostDrag* drag = m_near.get();
    std::optional<SolveResult> result = drag->place(transform);
    if (!result) {
        if (m_far == nullptr) {
            m_far = std::make_unique<HostDrag>(m_drawing, *m_header, m_names);
            m_far->lookFarther();
        }
        drag = m_far.get();
        result = drag->hasBroken() ? std::nullopt : drag->place(transform);
    }
    const bool isDone =
        result && result->isSolved() && result->leftAlone.empty() && drag->miss() <= YxGeContext::gTol.equalPoint();
    return isDone ? drag : nullptr;
}

std::optional<std::vector<Entity>> HostPull::movedBy(const YxGeMatrix3d& transform, const IsTold& isTold) {
    const HostProcess::Scope bound(m_drawing.process());
    const HostDrag* drag = placed(transform);
    if (drag == nullptr)
        return std::nullopt;
    const HostSketch& host = drag->host();
    std::vector<Entity> moved;
    for (const int number : host.moved()) {
        const Entity& before = host.document.entities[at(number)];
        Shape after = host.shapeOf(number);
        if (isTold(before, after))
            moved.emplace_back(before).shape = std::move(after);
    }
    return moved;
}

}  // namespace holdfast::hosting
