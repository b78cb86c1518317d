#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "commands/fillet/SegmentRecords.h"
#include "commands/fillet/SelfFillet.h"
#include "commands/fillet/VertexLookup.h"
#include "core/CurveEnds.h"
#include "core/KeepOrDelete.h"
#include "core/OpenAs.h"
#include "core/SegmentDependency.h"
#include "core/WritablePiece.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbPolyline.h>

#include <algorithm>
#include <tuple>

using holdfast::module::Collected;
using holdfast::module::GroupSurvey;
using holdfast::module::openAs;
using holdfast::module::Points;

namespace {

using PolyInfo = ConstraintFilletCmdCenter::PolyInfo;
using TrimMode = ConstraintFilletCmdCenter::PolylineTrimMode;

const YxDbPolyline* asPolyline(const YxDbEntity* entity) {
    if (entity == nullptr || !entity->isKindOf(YxDbPolyline::desc()))
        return nullptr;
    return static_cast<const YxDbPolyline*>(entity);
}

YxDbPolyline* asPolyline(YxDbEntity* entity) {
    return const_cast<YxDbPolyline*>(asPolyline(static_cast<const YxDbEntity*>(entity)));
}

Points pointsBefore(const PolyInfo& record) {
    return holdfast::module::endPair(record.startPoint, record.endPoint);
}

Points pointsNow(const PolyInfo& record, const YxDbPolyline& polyline) {
    return holdfast::module::segmentEnds(polyline, static_cast<unsigned int>(record.startIndex),
                                         static_cast<unsigned int>(record.endIndex));
}

/// Where a segment stands to the two that are filleted, by the vertices as the host passed them.
enum class Role { first, second, vanishes, other };

Role roleOf(unsigned int start, unsigned int firstVertex, unsigned int secondVertex, TrimMode mode) {
    if (start == firstVertex)
        return Role::first;
    if (start == secondVertex)
        return Role::second;
    const bool between = firstVertex < start && start < secondVertex;
    const bool behind = start > secondVertex;
    const bool vanishes = (mode == ConstraintFilletCmdCenter::kBetween && between) ||
                          (mode == ConstraintFilletCmdCenter::kBehind && behind);
    return vanishes ? Role::vanishes : Role::other;
}

// The arc's segment, inserted at the second vertex, moves the later segments up by one.
// KEEP: from vertex 0 of a closed polyline to 1 as well, so that the last segment gets the name of the first
// (SelfFilletSegments.AtVertexZeroOfAClosedPolylineGoOnNamingTheFirst).
void countInsertedArc(PolyInfo& record, unsigned int secondVertex) {
    if (static_cast<unsigned int>(record.startIndex) < secondVertex)
        return;
    ++record.startIndex;
    ++record.endIndex;
}

// In the order in which inserting each of the first at the front, and appending each of the second, leaves them.
YxArray<PolyInfo> inFilletOrder(const YxArray<PolyInfo>& first, const YxArray<PolyInfo>& second) {
    YxArray<PolyInfo> ordered(first.length() + second.length());
    for (int k = first.length() - 1; k >= 0; --k)
        ordered.append(first[k]);
    ordered.append(second);
    return ordered;
}

// Throws when the record's dependency is an object of another class.
void markRemovedOrThrow(const PolyInfo& record) {
    const YxSmartPtr<YxDbAssocGeomDependency> open =
        YxDbObjectIdImpl::openObject(record.dependency->objectId(), YxDb::kForWrite, false);
    if (open)
        open->setStatus(kSegmentRemovedAssocStatus, true);
}

/// Two polylines that a fillet joined into one.
struct JoinedPolylines {
    YxDbPolyline& joined;
    YxDbPolyline& first;  ///< the clones, in the joined direction
    YxDbPolyline& second;
};

bool joinKeptAllVertices(const JoinedPolylines& polylines) {
    return polylines.joined.numVerts() + 1 >= polylines.first.numVerts() + polylines.second.numVerts();
}

// True when the polylines touch: then the joined one gets the identifier of the vertex that they share.
bool shareVertex(const JoinedPolylines& polylines) {
    const unsigned int count = polylines.first.numVerts();
    if (count == 0 || polylines.joined.numVerts() < count)
        return false;
    const YxGePoint3d firstEnd = holdfast::module::vertexPoint(polylines.first, count - 1);
    if (!firstEnd.isEqualTo(holdfast::module::vertexPoint(polylines.second, 0)))
        return false;
    polylines.joined.setVertexIdentifierAt(count - 1, holdfast::module::vertexIdentifier(polylines.first, count - 1));
    return true;
}

void moveToJoined(const PolyInfo& record, const YxDbPolyline& joined, unsigned int offset) {
    if (!holdfast::module::isAlive(record))
        return;
    const auto open = openAs<YxDbAssocGeomDependency>(record.dependency->objectId(), YxDb::kForWrite);
    if (open.isNull())
        return;
    holdfast::module::moveToObject(*open, joined.objectId());
    holdfast::module::pointAtSegment(*open, static_cast<int>(static_cast<unsigned int>(record.startIndex) + offset));
}

}  // namespace

void ConstraintFilletCmdCenter::setSelfPolyLineDate(const YxDbEntity* polyline, unsigned int firstVertex,
                                                    unsigned int secondVertex, PolylineTrimMode mode, bool flag) {
    m_firstVertexIndex = 0;
    m_secondVertexIndex = 0;
    m_trimMode = kNothing;
    m_firstPolyInfos.setLogicalLength(0);
    const YxDbPolyline* filleted = asPolyline(polyline);
    const bool leavesAllInPlace = mode == kNothing || ((mode == kCorner || mode == kClosingCorner) && flag);
    if (leavesAllInPlace || filleted == nullptr)
        return;
    YxArray<YxDbAssocGeomDependency*> dependencies;
    getGeomPersistentReactors(polyline, dependencies);
    if (dependencies.isEmpty())
        return;
    m_groupId = dependencies.first()->owningAction();
    std::tie(m_firstVertexIndex, m_secondVertexIndex) = std::minmax(firstVertex, secondVertex);
    m_trimMode = mode;
    m_selfFilletFlag = flag;

    YxArray<PolyInfo> first;
    YxArray<PolyInfo> second;
    for (PolyInfo& record : holdfast::module::segmentRecords(*filleted, dependencies)) {
        const Role role = roleOf(static_cast<unsigned int>(record.startIndex), firstVertex, secondVertex, mode);
        if (mode == kCorner)
            countInsertedArc(record, secondVertex);
        if (role == Role::first)
            holdfast::module::appendGrowing(first, record);
        if (role == Role::second)
            holdfast::module::appendGrowing(second, record);
        if (role == Role::vanishes)
            holdfast::module::markSegmentRemoved(*record.dependency);
    }
    m_firstPolyInfos = inFilletOrder(first, second);
}

void ConstraintFilletCmdCenter::setSelfPolyLineConstraint(const YxDbEntity* polyline) {
    const YxDbPolyline* filleted = asPolyline(polyline);
    if (m_firstPolyInfos.isEmpty() || filleted == nullptr)
        return;
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId, YxDb::kForWrite);
    if (group.isNull())
        return;
    GroupSurvey survey(*group);
    survey.expect(holdfast::module::dependenciesOf(m_firstPolyInfos));
    Collected collected(m_deleteConstraints);
    YxArray<PolyInfo> kept;
    // KEEP: the points are read at the recorded indices, although vertices before them may have been removed
    // (FilletAcrossAGap.ComparesTheSecondSegmentByTheIndicesItHadBeforeVerticesWereRemoved).
    for (const PolyInfo& record : m_firstPolyInfos) {
        if (record.dependency != nullptr &&
            !holdfast::module::judgeSegment(survey, record.dependency, pointsBefore(record),
                                            pointsNow(record, *filleted), collected))
            holdfast::module::appendGrowing(kept, record);
    }
    const holdfast::module::SelfFillet fillet{.firstVertex = static_cast<int>(m_firstVertexIndex),
                                              .secondVertex = static_cast<int>(m_secondVertexIndex),
                                              .sharp = m_selfFilletFlag,
                                              .mode = m_trimMode};
    holdfast::module::SelfFilletRemapping(fillet, *holdfast::module::writablePiece(filleted), kept, survey, *group,
                                          collected)
        .apply();
}

void ConstraintFilletCmdCenter::setTwoPolyLineDate(const YxDbPolyline* first, const YxDbPolyline* second) {
    setOnePolyLineDate(first);
    const YxArray<PolyInfo> firstInfos = m_firstPolyInfos;
    setOnePolyLineDate(second);
    m_secondPolyInfos = m_firstPolyInfos;
    m_firstPolyInfos = firstInfos;
}

void ConstraintFilletCmdCenter::setTwoPolyLineCloneDate(const YxDbPolyline* first, const YxDbPolyline* second) {
    // KEEP: what was held is forgotten, not freed (FilletTwoPolylines.ForgetsFormerClonesWithoutFreeingThem).
    m_entityClones.setLogicalLength(0);
    if (m_firstPolyInfos.isEmpty() && m_secondPolyInfos.isEmpty())
        return;
    for (const YxDbPolyline* polyline : {first, second}) {
        if (polyline != nullptr)
            keepClone(*polyline);
    }
}

void ConstraintFilletCmdCenter::setTwoPolyLineConstraint(YxDbPolyline* joined, bool reverseFirst,
                                                         const YxDbPolyline* second, bool keepSecondDirection) {
    if (joined == nullptr || second == nullptr || joined->numVerts() < 2)
        return;
    if (m_firstPolyInfos.isEmpty() && m_secondPolyInfos.isEmpty())
        return;
    if (m_entityClones.length() != 2)
        return;
    YxDbPolyline* firstClone = asPolyline(m_entityClones.first());
    YxDbPolyline* secondClone = asPolyline(m_entityClones.last());
    if (firstClone == nullptr || secondClone == nullptr)
        return;
    if (reverseFirst && !m_firstPolyInfos.isEmpty())
        setReverseCloneInfo(firstClone, m_firstPolyInfos);
    if (!keepSecondDirection && !m_secondPolyInfos.isEmpty())
        setReverseCloneInfo(secondClone, m_secondPolyInfos);

    const JoinedPolylines polylines{.joined = *joined, .first = *firstClone, .second = *secondClone};
    if (joinKeptAllVertices(polylines)) {
        // KEEP: touching ends count as a gap when the first polyline carries no dependency
        // (FilletTwoPolylines.CountTouchingEndsAsAGapWhenTheFirstCarriesNothing).
        const bool shared = !m_firstPolyInfos.isEmpty() && shareVertex(polylines);
        if (reverseFirst) {
            for (const PolyInfo& record : m_firstPolyInfos)
                holdfast::module::repoint(record, record.endIndex);
        }
        const unsigned int offset = firstClone->numVerts() + (shared ? 0U : 1U);
        for (const PolyInfo& record : m_secondPolyInfos)
            moveToJoined(record, *joined, offset);
    }
    if (!reverseFirst)
        return;
    if (const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId, YxDb::kForWrite))
        setOnePolyLineDate(joined);
}

void ConstraintFilletCmdCenter::setFirstPolyLineConstraint(YxDbPolyline* polyline, const bool& dropBefore,
                                                           const unsigned int& segmentStart, const YxGePoint3d& point) {
    setOnePolyLineConstraint(m_firstPolyInfos, polyline, dropBefore, segmentStart, point);
}

void ConstraintFilletCmdCenter::setSecondPolyLineConstraint(YxDbPolyline* polyline, const bool& dropBefore,
                                                            const unsigned int& segmentStart,
                                                            const YxGePoint3d& point) {
    setOnePolyLineConstraint(m_secondPolyInfos, polyline, dropBefore, segmentStart, point);
}

void ConstraintFilletCmdCenter::setOnePolyLineConstraint(YxDbPolyline* polyline, const bool& dropBefore,
                                                         const unsigned int& segmentStart, const YxGePoint3d& point) {
    setOnePolyLineConstraint(m_firstPolyInfos, polyline, dropBefore, segmentStart, point);
}

void ConstraintFilletCmdCenter::setOnePolyLineConstraint(YxArray<PolyInfo>& infos, YxDbPolyline* polyline,
                                                         const bool& dropBefore, const unsigned int& segmentStart,
                                                         const YxGePoint3d& /*point*/) {
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId, YxDb::kForWrite);
    if (group.isNull() || polyline == nullptr)
        return;
    GroupSurvey survey(*group);
    survey.expect(holdfast::module::dependenciesOf(infos));
    Collected collected(m_deleteConstraints);
    for (PolyInfo& record : infos) {
        if (record.dependency == nullptr)
            continue;
        const auto start = static_cast<unsigned int>(record.startIndex);
        if (start == segmentStart) {
            const Points after = pointsNow(record, *polyline);
            if (holdfast::module::judgeSegment(survey, record.dependency, pointsBefore(record), after, collected))
                markRemovedOrThrow(record);
            record.startPoint = after[0];
            record.endPoint = after[1];
        } else if (dropBefore ? start < segmentStart : start > segmentStart) {
            markRemovedOrThrow(record);
        }
    }
}

void ConstraintFilletCmdCenter::setOnePolyLineDate(const YxDbPolyline* polyline) {
    m_firstPolyInfos.setLogicalLength(0);
    YxArray<YxDbAssocGeomDependency*> dependencies;
    getGeomPersistentReactors(polyline, dependencies);
    if (dependencies.isEmpty())
        return;
    m_groupId = dependencies.first()->owningAction();
    m_firstPolyInfos = holdfast::module::segmentRecords(*polyline, dependencies);
}

void ConstraintFilletCmdCenter::setReversePolyLineConstraint(YxDbPolyline* polyline) {
    const unsigned int count = polyline != nullptr ? polyline->numVerts() : 0;
    if (count < 2)
        return;
    const holdfast::module::VertexLookup vertices(*polyline, count - 1);
    for (const PolyInfo& record : m_firstPolyInfos) {
        if (!holdfast::module::isAlive(record))
            continue;
        // KEEP: pointed at each vertex there in turn; the last one holds
        // (FilletReversedPolyline.LetsTheLastVertexAtThePointWin).
        for (const unsigned int vertex : vertices.at(record.endPoint))
            holdfast::module::repoint(record, static_cast<int>(vertex) + 1);
    }
}

void ConstraintFilletCmdCenter::setReverseCloneInfo(YxDbPolyline* clone, YxArray<PolyInfo>& infos) {
    if (clone != nullptr)
        holdfast::module::reverseClone(*clone, infos);
}

bool ConstraintFilletCmdCenter::judgePolyDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                          const YxDbAssocGeomDependency* dependency,
                                                          const YxArray<YxGePoint3d>& before,
                                                          const YxArray<YxGePoint3d>& after) {
    if (group == nullptr)
        return true;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    return holdfast::module::judgeSegment(survey, dependency, before, after, collected);
}
