#include "commands/mirror/ConstraintMirrorCmdCenter.h"

#include "evaluation/EvaluationHeader.h"

using namespace holdfast::module;

ConstraintMirrorCmdCenter::~ConstraintMirrorCmdCenter() = default;

void ConstraintMirrorCmdCenter::addDataToWork(YxArray<YxDbObjectId> ids) {
    if (ids.isEmpty())
        return;
    AssocConstraintHeader* header = findHeaderOf(ids.first()).header;
    if (header == nullptr)
        return;
    setEditKind(*header, EditKind::mirror);
    // KEEP: unconstrained objects stay in the list (MirrorIds.AreHandedOverUnfiltered).
    header->editedObjectIds = ids;
}
