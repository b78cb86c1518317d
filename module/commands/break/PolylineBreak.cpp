#include "commands/break/ConstraintBreakCmdCenter.h"
#include "commands/break/PieceJoint.h"
#include "commands/break/PolylineCut.h"
#include "commands/break/SegmentSorting.h"
#include "core/OpenAs.h"
#include "core/SegmentDependency.h"
#include "core/SegmentFinder.h"
#include "core/WritablePiece.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbPolyline.h>

using holdfast::module::Collected;
using holdfast::module::GroupSurvey;
using holdfast::module::openAs;
using holdfast::module::SegmentEnds;
using holdfast::module::SegmentFate;
using holdfast::module::vertexIdentifier;

namespace {

using Record = ConstraintBreakCmdCenter::PolySegmentRecord;

const YxDbPolyline* asPolyline(const YxDbEntity* entity) {
    if (entity == nullptr || !entity->isKindOf(YxDbPolyline::desc()))
        return nullptr;
    return static_cast<const YxDbPolyline*>(entity);
}

void listIdentifiers(const YxDbPolyline& polyline, YxArray<int>& identifiers) {
    const unsigned int count = polyline.numVerts();
    for (unsigned int index = 0; index < count; ++index)
        holdfast::module::appendGrowing(identifiers, vertexIdentifier(polyline, index));
}

Record recordOf(SegmentEnds segment, const YxDbPolyline& uncut, YxDbAssocGeomDependency* dependency) {
    return {.startIndex = segment.start,
            .endIndex = segment.end,
            .startVertexId = vertexIdentifier(uncut, static_cast<unsigned int>(segment.start)),
            .endVertexId = vertexIdentifier(uncut, static_cast<unsigned int>(segment.end)),
            .dependency = dependency};
}

void writeIdentifiers(YxDbPolyline& firstPiece, const YxArray<Record>& records) {
    for (const Record& record : records) {
        firstPiece.setVertexIdentifierAt(static_cast<unsigned int>(record.startIndex), record.startVertexId);
        firstPiece.setVertexIdentifierAt(static_cast<unsigned int>(record.endIndex), record.endVertexId);
    }
}

// One less, also where that is no number of its own.
int predecessor(int identifier) {
    return static_cast<int>(static_cast<unsigned int>(identifier) - 1U);
}

void writeIdentifiersBehindCut(YxDbPolyline& secondPiece, int breakCase, const YxArray<int>& identifiers,
                               std::pair<const int, int> lastTouched) {
    const unsigned int count = secondPiece.numVerts();
    if (breakCase != 1 && breakCase != 4 && count == 2 && identifiers.length() >= 2) {
        // KEEP: last - 1, although that need not be the identifier that stood there
        // (BreakPolylineIdentifiers.CountsDownFromTheLastForAPieceOfTwoVertices).
        secondPiece.setVertexIdentifierAt(0, predecessor(identifiers.last()));
        secondPiece.setVertexIdentifierAt(1, identifiers.last());
        return;
    }
    const auto run = holdfast::module::identifiersBehindCut(breakCase, count, identifiers.length(), lastTouched);
    if (!run)
        return;
    for (int index = run->first; index < static_cast<int>(count); ++index)
        secondPiece.setVertexIdentifierAt(static_cast<unsigned int>(index), identifiers[index + run->shift]);
}

YxArray<YxDbAssocGeomDependency*> dependenciesOf(const YxArray<Record>& records) {
    YxArray<YxDbAssocGeomDependency*> dependencies(records.length());
    for (const Record& record : records)
        dependencies.append(record.dependency);
    return dependencies;
}

}  // namespace

void ConstraintBreakCmdCenter::setFirstPoly(YxDbAssoc2dConstraintGroup* group,
                                            const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                            const YxDbEntity* uncut, const YxDbEntity* firstPiece) {
    m_vertexIds.setLogicalLength(0);
    m_polyDepRecords.setLogicalLength(0);
    m_movedDepRecords.setLogicalLength(0);
    m_vertexIdMap.clear();
    const YxDbPolyline* before = asPolyline(uncut);
    const YxDbPolyline* after = asPolyline(firstPiece);
    if (group == nullptr || before == nullptr || after == nullptr)
        return;

    listIdentifiers(*before, m_vertexIds);
    const holdfast::module::CutPlace first = holdfast::module::cutPlace(m_startParam);
    const holdfast::module::CutPlace second = holdfast::module::cutPlace(m_endParam);
    m_breakCase = holdfast::module::breakCase(first, second);
    m_vertexIdMap = holdfast::module::touchedSegments(first, second);
    sortSegments(*group, dependencies, *before, *after);

    YxDbPolyline* piece = holdfast::module::writablePiece(after);
    writeIdentifiers(*piece, m_polyDepRecords);
    m_lastVertexId = vertexIdentifier(*piece, piece->numVerts() - 1);
}

void ConstraintBreakCmdCenter::sortSegments(YxDbAssoc2dConstraintGroup& group,
                                            const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                            const YxDbPolyline& uncut, const YxDbPolyline& firstPiece) {
    GroupSurvey survey(group);
    survey.expect(dependencies);
    Collected collected(m_deleteConstraints);
    holdfast::module::SegmentFinder finder(&uncut);
    holdfast::module::SegmentSorting sorting(survey,
                                             {.uncut = uncut,
                                              .firstPiece = firstPiece,
                                              .touched = m_vertexIdMap,
                                              .breakCase = m_breakCase,
                                              .endParam = m_endParam},
                                             collected);
    for (YxDbAssocGeomDependency* dependency : dependencies) {
        SegmentEnds segment;
        if (dependency == nullptr || !finder.find(dependency->objectId(), segment))
            continue;
        const SegmentFate fate = sorting.fateOf(segment, *dependency);
        if (fate == SegmentFate::stays)
            holdfast::module::appendGrowing(m_polyDepRecords, recordOf(segment, uncut, dependency));
        if (fate == SegmentFate::moves)
            holdfast::module::appendGrowing(m_movedDepRecords, recordOf(segment, uncut, dependency));
        if (fate == SegmentFate::removed)
            holdfast::module::markSegmentRemoved(*dependency);
    }
}

bool ConstraintBreakCmdCenter::judgePolyDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                         const YxDbAssocGeomDependency* dependency,
                                                         const YxArray<YxGePoint3d>& before,
                                                         const YxArray<YxGePoint3d>& after) {
    if (group == nullptr)
        return true;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    return holdfast::module::judgeSegment(survey, dependency, before, after, collected);
}

void ConstraintBreakCmdCenter::setSecondPoly(const YxDbEntity* secondPiece) {
    const YxDbPolyline* piece = asPolyline(secondPiece);
    if (piece == nullptr || m_movedDepRecords.isEmpty() || m_vertexIdMap.empty())
        return;
    writeIdentifiersBehindCut(*holdfast::module::writablePiece(piece), m_breakCase, m_vertexIds,
                              *m_vertexIdMap.rbegin());

    const YxArray<YxDbAssocGeomDependency*> moved = dependenciesOf(m_movedDepRecords);
    holdfast::module::PieceJoint joint(m_groupId, m_lastVertexId, piece, m_deleteConstraints);
    joint.expect(moved);
    for (const YxDbAssocGeomDependency* dependency : moved) {
        const auto open = openAs<YxDbAssocGeomDependency>(dependency->objectId(), YxDb::kForWrite);
        if (open.isNull())
            continue;
        holdfast::module::moveToObject(*open, piece->objectId());
        joint.loosen(open.get());
    }
}

void ConstraintBreakCmdCenter::deleteCoincidenceConstraint(const YxDbAssocGeomDependency* dependency,
                                                           const YxDbPolyline* piece) {
    holdfast::module::PieceJoint(m_groupId, m_lastVertexId, piece, m_deleteConstraints).loosen(dependency);
}
