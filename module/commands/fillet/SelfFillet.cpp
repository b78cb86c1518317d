#include "commands/fillet/SelfFillet.h"

#include "core/PointCoincidence.h"

#include <yxdb/YxDbPolyline.h>

namespace holdfast::module {

void SelfFilletRemapping::apply() {
    switch (m_fillet.mode) {
        case ConstraintFilletCmdCenter::kCorner:
            return corner();
        case ConstraintFilletCmdCenter::kBetween:
            return between();
        case ConstraintFilletCmdCenter::kClosingCorner:
            return closingCorner();
        case ConstraintFilletCmdCenter::kBehind:
            return behind();
        case ConstraintFilletCmdCenter::kClosing:
            return closing();
        case ConstraintFilletCmdCenter::kNothing:
            return;
    }
}

void SelfFilletRemapping::corner() {
    if (keptOnlyFrom(m_fillet.firstVertex)) {
        const PolyInfo& first = m_kept[0];
        setIdentifier(first.endIndex, first.endVertexId);
        setIdentifier(first.endIndex + 1, 0);
    }
    if (keptBoth()) {
        const PolyInfo& second = m_kept[1];
        setIdentifier(m_kept[0].endIndex, m_kept[0].endVertexId);
        // KEEP: the vertex behind the second segment is numbered anew, so that the next segment is told by its end
        // alone (FilletCorner.PointsTheSecondSegmentBehindTheArc).
        setIdentifier(second.startIndex, 0);
        setIdentifier(second.endIndex, 0);
        repoint(second, second.endIndex);
        loosenCornerOf(second);
    }
}

void SelfFilletRemapping::between() {
    if (!m_fillet.sharp)
        return;
    if (keptOnlyFrom(m_fillet.firstVertex))
        setIdentifier(m_kept[0].endIndex, m_kept[0].endVertexId);
    if (keptBoth())
        repoint(m_kept[0], m_kept[0].startIndex + 1);
}

void SelfFilletRemapping::closingCorner() {
    if (keptOnlyFrom(m_fillet.secondVertex)) {
        const PolyInfo& first = m_kept[0];
        setIdentifier(0, 0);
        setIdentifier(first.startIndex + 1, first.endVertexId);
    }
    if (keptBoth()) {
        const PolyInfo& second = m_kept[1];
        setIdentifier(second.startIndex, 0);
        setIdentifier(second.startIndex + 1, 0);
        repoint(second, second.startIndex + 1);
        loosenCornerOf(second);
    }
}

void SelfFilletRemapping::behind() {
    if (!m_fillet.sharp)
        return;
    if (keptOnlyFrom(m_fillet.secondVertex))
        setIdentifier(0, m_kept[0].endVertexId);
    if (keptBoth()) {
        repoint(m_kept[1], m_kept[1].endIndex);
        loosenCornerOf(m_kept[1]);
    }
}

void SelfFilletRemapping::closing() {
    if (m_fillet.sharp && !m_kept.isEmpty())
        repoint(m_kept.last(), m_kept.last().endIndex);
}

bool SelfFilletRemapping::keptOnlyFrom(int startVertex) const {
    return m_kept.length() == 1 && m_kept[0].startIndex == startVertex;
}

void SelfFilletRemapping::setIdentifier(int index, int identifier) {
    m_polyline.setVertexIdentifierAt(static_cast<unsigned int>(index), identifier);
}

// KEEP: the corner that moved is collected already, and the coincidence at the segment's other end goes in its place
// (FilletCorner.LosesTheCornerAndTheNextOneBecauseTheFirstIsCollected).
void SelfFilletRemapping::loosenCornerOf(const PolyInfo& record) {
    deleteOnePointCoincidence(m_survey, m_group, record.dependency, m_collected);
}

}  // namespace holdfast::module
