// The entities that a stretch does not simply translate: construction lines, arcs, rays and arc segments of polylines.

#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "core/OnceList.h"
#include "core/OpenAs.h"

#include <utility>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbXline.h>

using namespace holdfast::module;

namespace {

constexpr int kBasePointIndex = 0;

/// The turn about the base, seen from above, that brings one point into the direction of the other.
YxGeMatrix3d turnAbout(const YxGePoint3d& base, const YxGePoint3d& from, const YxGePoint3d& to) {
    const YxGeVector3d before = from - base;
    const YxGeVector3d after = to - base;
    const double angle = before.angleTo(after);
    YxGeMatrix3d turn;
    turn.setToRotation(before.crossProduct(after).z < 0.0 ? -angle : angle, YxGeVector3d::kZAxis, base);
    return turn;
}

YxGeMatrix3d translationBetween(const YxGePoint3d& from, const YxGePoint3d& to) {
    YxGeMatrix3d translation;
    translation.setToTranslation(to - from);
    return translation;
}

/// When the base point moves too, the whole line moves and nothing turns.
bool turnsAboutItsBase(const YxDbEntity* entity, const YxArray<int>& stretchedIndices) {
    return !stretchedIndices.contains(kBasePointIndex) && entity != nullptr && entity->isKindOf(YxDbXline::desc());
}

}  // namespace

void ConstraintStretchCmdCenter::addSpecialEntityInfo() {
    m_specialInfos.setLogicalLength(0);
    if (!listsMatch())
        return;
    for (int i = 0; i < m_editedIds.length(); ++i) {
        const YxDbObjectId id = m_editedIds[i];
        if (!LvEvaDataConverter::hasAssocConstraint(id))
            continue;
        const YxArray<int>& indices = m_stretchedIndices[i];
        // KEEP: ends the pass, objects behind it are not examined
        // (StretchSpecials.EndAtAnEmptyIndexList, StretchSpecials.EndAtAnObjectThatDoesNotOpen).
        const auto entity = indices.isEmpty() ? YxSmartPtr<YxDbEntity>() : openAs<YxDbEntity>(id);
        if (!entity)
            return;
        if (entity->isKindOf(YxDbArc::desc()))
            addArcInfo(id, entity.get(), sourceAt(i), indices);
        if (entity->isKindOf(YxDbXline::desc()))
            addXLineInfo(id, entity.get(), sourceAt(i), indices);
        if (entity->isKindOf(YxDbRay::desc()))
            addRayInfo(id, entity.get(), sourceAt(i), indices);
        if (entity->isKindOf(YxDbPolyline::desc()))
            addPolylineInfo(id, entity.get(), sourceAt(i), indices);
    }
}

// NOLINTBEGIN(performance-unnecessary-value-param): each gets an index list of its own

void ConstraintStretchCmdCenter::addXLineInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source,
                                              YxArray<int> stretchedIndices) {
    if (!turnsAboutItsBase(entity, stretchedIndices) || source == nullptr)
        return;
    const auto& xline = static_cast<const YxDbXline&>(*entity);
    const YxGePoint3d sourceSecond = static_cast<const YxDbXline&>(*source).secondPoint();
    StretchSpecialInfo info;
    info.objectId = id;
    info.xform = turnAbout(xline.basePoint(), xline.secondPoint(), sourceSecond);
    appendGrowing(m_specialInfos, info);
}

// KEEP: asks for a construction line, as above, so that a ray is recorded only where the host's rays are construction
// lines (StretchRay.HasNoRecordWhereRaysAreNoConstructionLines).
void ConstraintStretchCmdCenter::addRayInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source,
                                            YxArray<int> stretchedIndices) {
    addXLineInfo(id, entity, source, std::move(stretchedIndices));
}

void ConstraintStretchCmdCenter::addArcInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source,
                                            YxArray<int> stretchedIndices) {
    if (stretchedIndices.length() != 1 || entity == nullptr || !entity->isKindOf(YxDbArc::desc()) || source == nullptr)
        return;
    const auto& sourceArc = static_cast<const YxDbArc&>(*source);
    StretchSpecialInfo info;
    info.objectId = id;
    info.xform = translationBetween(static_cast<const YxDbArc&>(*entity).center(), sourceArc.center());
    info.radius = sourceArc.radius();
    appendGrowing(m_specialInfos, info);
}

void ConstraintStretchCmdCenter::addPolylineInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source,
                                                 YxArray<int> stretchedIndices) {
    if (entity == nullptr || !entity->isKindOf(YxDbPolyline::desc()) || source == nullptr)
        return;
    const auto& polyline = static_cast<const YxDbPolyline&>(*entity);
    const auto& sourcePolyline = static_cast<const YxDbPolyline&>(*source);
    const int count = static_cast<int>(polyline.numVerts());
    const int highest = polyline.isClosed() ? count : count - 1;
    for (const int index : stretchedIndices) {
        const auto segment = static_cast<unsigned int>(index);
        // KEEP: everything but a straight segment counts, also the last vertex of an open polyline and index n of a
        // closed one; both have the arc that nothing was read into
        // (StretchPolyline.RecordsAnUnreadArcForTheLastVertexOfAnOpenOne,
        // StretchPolyline.AcceptsAnIndexEqualToTheVertexCountOnlyWhenClosed).
        if (index < 0 || index > highest || polyline.segType(segment) == YxDbPolyline::kLine)
            continue;
        YxGeCircArc3d arc;
        YxGeCircArc3d sourceArc;
        polyline.getArcSegAt(segment, arc);
        sourcePolyline.getArcSegAt(segment, sourceArc);
        StretchSpecialInfo info;
        info.objectId = id;
        info.xform = translationBetween(arc.center(), sourceArc.center());
        info.segIndex = index;
        info.radius = sourceArc.radius();
        appendGrowing(m_specialInfos, info);
    }
}

// NOLINTEND(performance-unnecessary-value-param)
