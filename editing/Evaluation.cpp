#include "editing/Evaluation.h"

#include <algorithm>
#include <unordered_map>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbAssocManager.h>

#include "commands/mirror/ConstraintMirrorCmdCenter.h"
#include "geometry/Tolerances.h"
#include "hosting/HostOpening.h"

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
    const auto group = opened<YxDbAssoc2dConstraintGroup>(context.drawing.groupId(), YxDb::kForWrite);
    if (group->setStatus(kChangedAssocStatus, true, false) != Yxrt::eOk)
        throw EditError("the host does not take the constraints of the drawing as changed");
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
    if (context.evaluator.last().miss <= kHolds * context.drawing.extent())
        return;
    context.evaluator.group().refuseYielded();
    throw EditError("the constraints of the drawing let the edit come only near to what was asked");
}

void putBack(const EditContext& context, const DrawingChange& earlier) {
    std::unordered_map<std::size_t, const Entity*> then;
    for (const EntityChange& change : earlier.entities)
        if (change.after)
            then.emplace(change.order, &*change.after);
    for (const EntityChange& change : context.drawing.change().entities) {
        const auto known = then.find(change.order);
        const Entity* was = known != then.end() ? known->second : change.before ? &*change.before : nullptr;
        if (was != nullptr && change.after && !(was->shape == change.after->shape))
            context.drawing.write(was->id, was->shape);
    }
}

}  // namespace holdfast::editing
