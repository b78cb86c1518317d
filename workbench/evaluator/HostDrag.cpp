#include "workbench/evaluator/HostDrag.h"

#include <yxbase/YxGeTol.h>

#include "workbench/drawing/HostShapes.h"
#include "workbench/evaluator/EditDemands.h"

namespace holdfast {

namespace {

/// Parts of the figure's size within which a step has followed its transform.
constexpr double kFollowed = 1e-6;

std::size_t at(int i) {
    return static_cast<std::size_t>(i);
}

std::vector<int> valuesOf(const Figure& figure, const std::vector<int>& entities) {
    std::vector<int> values;
    for (const int number : entities) {
        const FigureEntity& entity = figure.entities[at(number)];
        for (int v = 0; v < entity.valueCount; ++v)
            values.push_back(entity.firstValue + v);
    }
    return values;
}

}  // namespace

HostDrag::HostDrag(const Drawing& drawing, const AssocConstraintHeader& header)
    : m_host(drawing),
      m_edited(m_host.numbersOf(drawing, header.editedObjectIds)),
      m_handles(valuesOf(m_host.figure, m_edited)),
      m_dragged(m_host.figure),
      m_session(std::make_unique<DragSession>(m_dragged, m_handles)) {}

/// The drag session follows quickly where the constraints let everything through. Where they do not, the edited
/// entities keep their sizes if they can, and else come as near as they can.
SolveResult HostDrag::step(const YxGeMatrix3d& transform) {
    const EditDemand demand = transformDemand(m_host, m_edited, transform);
    std::vector<double> goals;
    for (const Target& target : demand.targets)
        goals.push_back(target.goal);
    SolveResult followed = m_session->step(goals);
    if (!followed.isSolved() || m_session->miss() > kFollowed * m_host.figure.size()) {
        Figure firm = m_host.figure;
        firm.values = m_host.drawn;
        SolveResult kept = meet(firm, demand);
        if (kept.isSolved() || !followed.isSolved()) {
            if (kept.isSolved())
                take(firm.values, missOf(firm, demand));
            return kept;
        }
    }
    take(m_dragged.values, m_session->miss());
    return followed;
}

void HostDrag::take(const std::vector<double>& values, double miss) {
    m_host.figure.values = values;
    m_miss = miss;
}

void HostDrag::preview(const Drawing& drawing, AssocConstraintHeader& header) {
    std::vector<int> shown = m_edited;
    std::vector<char> isShown(m_host.figure.entities.size(), 0);
    for (const int number : m_edited)
        isShown[at(number)] = 1;
    for (const int number : m_host.moved())
        if (!isShown[at(number)])
            shown.push_back(number);
    header.entitiesToDraw.setLogicalLength(0);
    for (const int number : shown) {
        YxDbEntity*& copy = m_previews[number];
        if (copy == nullptr) {
            const YxDbEntity& resident = drawing.entity(m_host.document.entities[at(number)].id);
            copy = static_cast<YxDbEntity*>(resident.clone());
            header.adopt(copy);
        }
        writeShape(*copy, m_host.shapeOf(number));
        header.entitiesToDraw.append(copy);
    }
}

}  // namespace holdfast
