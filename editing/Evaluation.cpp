#include "editing/Evaluation.h"

#include <algorithm>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbAssocManager.h>
#include <yxbase/YxSmartPtr.h>

#include "commands/mirror/ConstraintMirrorCmdCenter.h"
#include "geometry/Tolerances.h"
#include "inference/PlaneCurves.h"

namespace holdfast::editing {

bool isConstrained(const EditContext& context, const std::string& name) {
    return LvEvaDataConverter::hasAssocConstraint(context.drawing.id(name));
}

YxArray<YxDbObjectId> idsOf(const EditContext& context, const std::vector<std::string>& names) {
    YxArray<YxDbObjectId> ids;
    for (const std::string& name : names)
        ids.append(context.drawing.id(name));
    return ids;
}

std::vector<std::string> constrainedFirst(const EditContext& context, std::vector<std::string> names) {
    std::stable_partition(names.begin(), names.end(),
                          [&](const std::string& name) { return isConstrained(context, name); });
    return names;
}

void markChanged(const EditContext& context) {
    const YxSmartPtr<YxDbAssoc2dConstraintGroup> group(
        YxDbObjectIdImpl::openObject(context.drawing.groupId(), YxDb::kForWrite, false));
    if (!group.isNull())
        group->setStatus(kChangedAssocStatus, true, false);
}

void evaluate(const EditContext& context) {
    context.reasons.noteDeleted(context.drawing);
    if (!YxDbAssocManager::evaluateTopLevelNetwork(&context.drawing.process().database(), nullptr, 0))
        throw EditError("the constraints of the drawing do not allow this edit");
}

void followPlaced(const EditContext& context, const std::vector<std::string>& names) {
    const std::vector<std::string> ordered = constrainedFirst(context, names);
    ConstraintMirrorCmdCenter centre;
    centre.addDataToWork(idsOf(context, ordered));
    if (!isConstrained(context, ordered.front()))
        return;
    markChanged(context);
    evaluate(context);
}

void refuseLess(const EditContext& context) {
    if (context.evaluator.last().miss <= kHolds * extentOf(context.drawing.document()))
        return;
    context.evaluator.refuseYielded();
    throw EditError("the constraints of the drawing let the edit come only near to what was asked");
}

void putBack(const EditContext& context, const Document& before) {
    for (const Entity& entity : before.entities)
        if (!(context.drawing.shape(entity.id) == entity.shape))
            context.drawing.write(entity.id, entity.shape);
}

}  // namespace holdfast::editing
