#include "drag/LvConstraintDropData.h"

#include "core/OnceList.h"
#include "drag/DragPreview.h"
#include "evaluation/EntityOpening.h"
#include "evaluation/EvaluationHeader.h"

#include <algorithm>

#include <yxdb/YxDbPolyline.h>

using namespace holdfast::module;

namespace {

// How the host ended the drag, as setFlag takes it.
constexpr int kDropped = 1;
constexpr int kHostSolvesItself[] = {3, -2};

/// The header owns the clones from now on, the list is empty.
void adoptAll(AssocConstraintHeader& header, YxArray<YxDbEntity*>& clones) {
    for (YxDbEntity* clone : clones)
        header.adopt(clone);
    clones.setLogicalLength(0);
}

}  // namespace

int LvConstraintDropData::mFlag = 0;
YxDbObjectId LvConstraintDropData::mGroupId;
YxArray<YxDbObjectId> LvConstraintDropData::mObjIdArr;
AssocConstraintHeader* LvConstraintDropData::mpAssocHeader = nullptr;

/// The dragged objects that could be opened; closed when this ends.
struct LvConstraintDropData::Opened {
    Opened() = default;
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() { closeOpenedEnts(entities); }

    void open(const YxDbObjectId& id) {
        YxDbEntity* entity = nullptr;
        if (!id.isNull() && yxdbOpenObject(entity, id, YxDb::kForRead, false) == Yxrt::eOk && entity != nullptr)
            appendGrowing(entities, entity);
    }

    YxArray<YxDbEntity*> entities;
};

/// What the first step of a session gathers. Constrained objects other than polylines are not cloned. Clones that were
/// not handed over are released when this ends.
struct LvConstraintDropData::Collected {
    Collected() = default;
    Collected(const Collected&) = delete;
    Collected& operator=(const Collected&) = delete;
    ~Collected() {
        releaseCloneEnts(polylineClones);
        releaseCloneEnts(freeClones);
    }

    void add(const YxDbEntity& entity) {
        const YxDbObjectId id = entity.objectId();
        if (!LvEvaDataConverter::hasAssocConstraint(id)) {
            if (YxDbEntity* clone = copyOf(entity))
                appendGrowing(freeClones, clone);
            return;
        }
        if (entity.isKindOf(YxDbPolyline::desc()))
            addPolyline(entity, id);
        appendGrowing(constrainedIds, id);
    }

    void addPolyline(const YxDbEntity& polyline, const YxDbObjectId& id) {
        YxDbEntity* clone = copyOf(polyline);
        if (clone == nullptr)
            return;
        appendGrowing(polylineClones, clone);
        appendGrowing(polylineIds, id);
    }

    void handOver(AssocConstraintHeader& header) {
        setEditKind(header, EditKind::drag);
        header.unconstrainedEntities = freeClones;
        header.polylineEntities = polylineClones;
        header.dropObjectIds = polylineIds;
        header.collectNeeded = false;
        header.dropCollected = true;
        header.dropChanged = true;
        header.editedObjectIds = constrainedIds;
        header.dragActive = true;
        adoptAll(header, freeClones);
        adoptAll(header, polylineClones);
    }

    YxArray<YxDbObjectId> constrainedIds;
    YxArray<YxDbObjectId> polylineIds;
    YxArray<YxDbEntity*> polylineClones;
    YxArray<YxDbEntity*> freeClones;
};

void LvConstraintDropData::reset() {
    mObjIdArr.setLogicalLength(0);
    mGroupId = YxDbObjectId();
    mpAssocHeader = nullptr;
    mFlag = 0;
}

void LvConstraintDropData::init(const YxArray<YxDbObjectId>& ids) {
    reset();
    mObjIdArr.append(ids);
    const auto* first = std::ranges::find_if(mObjIdArr, LvEvaDataConverter::hasAssocConstraint);
    if (first == mObjIdArr.end())
        return;
    mGroupId = findGroup(*first);
    mpAssocHeader = findHeader(mGroupId);
    if (mpAssocHeader == nullptr)
        return;
    mpAssocHeader->uninit();
    mpAssocHeader->dragActive = true;
}

bool LvConstraintDropData::addDataToWork(const YxGeMatrix3d& xform) {
    if (mObjIdArr.isEmpty() || mGroupId.isNull() || mpAssocHeader == nullptr)
        return false;
    if (mpAssocHeader->collectNeeded && !collect())
        return false;
    mpAssocHeader->dragTransform = xform;
    mpAssocHeader->staticTransform = xform;
    markChanged(mGroupId);
    return true;
}

bool LvConstraintDropData::collect() {
    Collected collected;
    {
        Opened opened;
        for (const YxDbObjectId& id : mObjIdArr)
            opened.open(id);
        for (const YxDbEntity* entity : opened.entities)
            collected.add(*entity);
    }
    if (collected.constrainedIds.isEmpty())
        return false;
    collected.handOver(*mpAssocHeader);
    return true;
}

void LvConstraintDropData::closeOpenedEnts(YxArray<YxDbEntity*>& entities) {
    for (YxDbEntity* entity : entities)
        if (entity != nullptr)
            entity->close();
    entities.setLogicalLength(0);
}

void LvConstraintDropData::releaseCloneEnts(YxArray<YxDbEntity*>& clones) {
    for (const YxDbEntity* clone : clones)
        delete clone;
    clones.setLogicalLength(0);
}

void LvConstraintDropData::evaluate() {
    evaluateNetwork();
}

bool LvConstraintDropData::draw(YxGiWorldDraw* worldDraw) {
    return mpAssocHeader != nullptr && worldDraw != nullptr && drawPreview(*mpAssocHeader, *worldDraw);
}

void LvConstraintDropData::confirm() {
    if (mpAssocHeader != nullptr) {
        mpAssocHeader->dragActive = false;
        if (mpAssocHeader->dropChanged || mFlag != kDropped)
            setEditKind(*mpAssocHeader, EditKind::dragEnd);
        if (std::ranges::count(kHostSolvesItself, mFlag) != 0)
            AssocConstraintHeader::m_isForbidEvaStatic = true;
    }
    reset();
}

void LvConstraintDropData::cancel() {
    if (mpAssocHeader != nullptr) {
        setEditKind(*mpAssocHeader, EditKind::dragEnd);
        evaluate();
    }
    reset();
}

void LvConstraintDropData::setFlag(int flag) {
    mFlag = flag;
}
