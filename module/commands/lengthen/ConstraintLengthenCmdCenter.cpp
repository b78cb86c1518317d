#include "commands/lengthen/ConstraintLengthenCmdCenter.h"

#include "core/CurveEnds.h"
#include "core/OnceList.h"
#include "core/OpenAs.h"
#include "evaluation/EntityOpening.h"
#include "evaluation/EvaluationHeader.h"

#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbPolyline.h>

using namespace holdfast::module;

namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

struct LengthenedKind {
    YxRxClass* (*desc)();
    EntType entType;
};

// The curves that LENGTHEN can change and the evaluator follows; the first class that the curve is of wins.
constexpr LengthenedKind kLengthenedKinds[] = {
    {&YxDbLine::desc, EntType::kLine},
    {&YxDbArc::desc, EntType::kArc},
    {&YxDbPolyline::desc, EntType::kPolyline},
    {&YxDbEllipse::desc, EntType::kEllipse},
};

const LengthenedKind* kindOf(const YxDbCurve& curve) {
    for (const LengthenedKind& kind : kLengthenedKinds)
        if (curve.isKindOf(kind.desc()))
            return &kind;
    return nullptr;
}

void reportIfMoved(LvEvaDataConverterLengthenEdit& converter, const YxDbObjectId& id, EntType entType, bool isStart,
                   const YxGeVector3d& offset) {
    if (!offset.isZeroLength(YxGeContext::gTol))
        converter.collectAndUpdateInfo(id, entType, isStart, offset);
}

/// A converter that was made for another command takes no report.
void reportMovedEnds(const AssocConstraintHeader& header, const YxDbObjectId& id, const OriCurveInfo& original,
                     const EndPoints& now) {
    auto* converter = dynamic_cast<LvEvaDataConverterLengthenEdit*>(header.converter);
    if (converter == nullptr)
        return;
    reportIfMoved(*converter, id, original.entType, true, now.start - original.startPoint);
    reportIfMoved(*converter, id, original.entType, false, now.end - original.endPoint);
}

}  // namespace

ConstraintLengthenCmdCenter::ConstraintLengthenCmdCenter() = default;
ConstraintLengthenCmdCenter::~ConstraintLengthenCmdCenter() = default;

bool ConstraintLengthenCmdCenter::addOriCurveInfo(const YxDbCurve* curve, const YxDbObjectId& id) {
    if (curve == nullptr || !LvEvaDataConverter::hasAssocConstraint(id) || m_originals.contains(id))
        return false;
    const LengthenedKind* kind = kindOf(*curve);
    if (kind == nullptr)
        return false;
    const EndPoints ends = endPoints(*curve);
    YxDbEntity* copy = copyOf(*curve);
    if (copy == nullptr)
        return false;
    m_copies.keep(copy);
    m_originals[id] = {.startPoint = ends.start, .endPoint = ends.end, .pOriEntity = copy, .entType = kind->entType};
    return true;
}

bool ConstraintLengthenCmdCenter::addDataToWork() {
    YxDbObjectId group;
    // KEEP: the first curve's group stands for all, and no curve for the null group
    // (LengthenHeader.IsTheFirstCurvesForCurvesOfTwoGroups, LengthenHeader.IsTheNullGroupsWithoutAnyCurve).
    if (!m_originals.empty()) {
        group = findGroup(m_originals.begin()->first);
        if (group.isNull())
            return false;
    }
    AssocConstraintHeader* header = findHeader(group);
    if (header == nullptr || !ensureConverter(*header, kLengthenEditor))
        return false;
    header->editedObjectIds.setLogicalLength(0);
    setEditKind(*header, EditKind::lengthen);
    header->preEditEntities.clear();
    for (const auto& [id, original] : m_originals)
        handOver(*header, id, original);
    markChanged(group);
    return true;
}

void ConstraintLengthenCmdCenter::handOver(AssocConstraintHeader& header, const YxDbObjectId& id,
                                           const OriCurveInfo& original) {
    const auto curve = openAs<YxDbCurve>(id, YxDb::kForRead);
    if (!curve || !LvEvaDataConverter::hasAssocConstraint(id))
        return;
    appendGrowing(header.editedObjectIds, id);
    if (original.pOriEntity == nullptr)
        return;
    auto* copy = static_cast<YxDbEntity*>(original.pOriEntity);
    header.preEditEntities[id] = copy;
    m_copies.handOver(copy, header);
    reportMovedEnds(header, id, original, endPoints(*curve));
}
