#include "commands/stretch/ConstraintStretchCmdCenter.h"

#include "core/OnceList.h"
#include "evaluation/EvaluationHeader.h"

#include <yxdb/YxDbPolyline.h>

using namespace holdfast::module;

/// What one step hands over, in the order of the edited objects. Objects without a stretched grip are in none.
struct ConstraintStretchCmdCenter::StepLists {
    YxArray<YxArray<int>> indexLists;  ///< of all objects, constrained or not
    YxArray<YxDbObjectId> constrainedIds;
    YxArray<YxDbObjectId> polylineIds;
    YxArray<YxDbEntity*> polylineSources;
    YxArray<YxArray<int>> polylineIndexLists;
    YxArray<YxDbEntity*> unconstrainedSources;
};

ConstraintStretchCmdCenter::~ConstraintStretchCmdCenter() = default;

void ConstraintStretchCmdCenter::init(const YxArray<YxDbObjectId>& ids) {
    setHeader(ids);
    if (m_header != nullptr)
        m_header->uninit();
}

void ConstraintStretchCmdCenter::setSourceInfo(const YxGeVector3d& displacement, const YxArray<void*>& sources,
                                               const YxArray<YxArray<int>>& stretchedIndices) {
    m_displacement = displacement;
    m_sourceEntities = sources;
    m_stretchedIndices = stretchedIndices;
    addSpecialEntityInfo();
}

void ConstraintStretchCmdCenter::setStartPnt(YxGePoint3d point) {
    m_startPoint = point;
}

YxDbEntity* ConstraintStretchCmdCenter::sourceAt(int index) const {
    return static_cast<YxDbEntity*>(m_sourceEntities[index]);
}

bool ConstraintStretchCmdCenter::listsMatch() const {
    const int count = m_editedIds.length();
    return m_sourceEntities.length() == count && m_stretchedIndices.length() == count;
}

void ConstraintStretchCmdCenter::addDataToWork() {
    if (m_groupId.isNull() || m_header == nullptr || !listsMatch())
        return;
    const StepLists lists = sortObjects();
    if (lists.constrainedIds.isEmpty())
        return;
    if (m_header->converter == nullptr && !startHeader(lists))
        return;
    m_header->dragTransform.setToTranslation(m_displacement);
    m_header->dropObjectIds = lists.polylineIds;
    m_header->polylineEntities = lists.polylineSources;
    m_header->polylineIndexLists = lists.polylineIndexLists;
    m_header->unconstrainedEntities = lists.unconstrainedSources;
    feedConverter(lists);
    markChanged(m_groupId);
}

ConstraintStretchCmdCenter::StepLists ConstraintStretchCmdCenter::sortObjects() const {
    StepLists lists;
    for (int i = 0; i < m_editedIds.length(); ++i) {
        const YxArray<int>& indices = m_stretchedIndices[i];
        if (indices.isEmpty())
            continue;
        appendGrowing(lists.indexLists, indices);
        YxDbEntity* source = sourceAt(i);
        if (!LvEvaDataConverter::hasAssocConstraint(m_editedIds[i])) {
            appendGrowing(lists.unconstrainedSources, source);
            continue;
        }
        if (source != nullptr && source->isKindOf(YxDbPolyline::desc())) {
            appendGrowing(lists.polylineIndexLists, indices);
            appendGrowing(lists.polylineSources, source);
            appendGrowing(lists.polylineIds, m_editedIds[i]);
        }
        appendGrowing(lists.constrainedIds, m_editedIds[i]);
    }
    return lists;
}

/// What only the first step of a header writes; a missing converter tells it. False when none can be made.
bool ConstraintStretchCmdCenter::startHeader(const StepLists& lists) {
    setEditKind(*m_header, EditKind::stretch);
    m_header->editedObjectIds = lists.constrainedIds;
    m_header->points.setLogicalLength(0);
    m_header->points.append(m_startPoint);
    return ensureConverter(*m_header, kStretchEditor);
}

void ConstraintStretchCmdCenter::feedConverter(const StepLists& lists) const {
    LvEvaDataConverter& converter = *m_header->converter;
    converter.beginStep();
    converter.setObjectIds(lists.constrainedIds);
    converter.resetData(lists.indexLists);
    converter.setTransform(m_displacement);
    for (const StretchSpecialInfo& info : m_specialInfos)
        converter.addSpecialInfo(info.objectId, info.xform, info.segIndex, info.radius);
    converter.addObjectOffset();
}

void ConstraintStretchCmdCenter::addDataToStaticEvaluate() {
    // KEEP: the host takes the converter's lifetime; it is not released here
    // (StretchStaticEvaluate.LeavesItsConverterToTheHost).
    LvEvaDataConverter* converter = LvEvaDataConverterFactory::createInstance(kStaticEvaluateEditor);
    if (converter == nullptr)
        return;
    for (const YxDbObjectId& id : m_editedIds)
        converter->addObjectOffset(id, YxGeVector3d::kIdentity);
    converter->evaluate();
}
