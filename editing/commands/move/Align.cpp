#include "commands/align/ConstraintAlignCmdCenter.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/commands/move/MirroredConstraints.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

namespace {

/// One pair of points shifts, two turn as well.
PlaneTransform transformOf(const Align& edit) {
    if (!edit.direction)
        return translation({edit.to.x - edit.from.x, edit.to.y - edit.from.y});
    return alignment(edit.from, edit.direction->from, edit.to, edit.direction->to, edit.direction->scale);
}

}  // namespace

void require(const Align& edit, const Drawing& drawing) {
    requireSelection(drawing, edit.entities, "from");
    transformOf(edit);
}

void perform(const Align& edit, EditContext& context) {
    const std::vector<std::string> names = requireSelection(context.drawing, edit.entities, "from");
    const PlaneTransform transform = transformOf(edit);
    context.edited = names;
    refuseMovingFixed(context, names, transform);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(idsOf(context, names));
    centre.updateCenterMat(matrixOf(transform));
    if (centre.getAssocObjs().isEmpty()) {
        for (const std::string& name : names)
            moveEntity(context, name, transform);
        return;
    }
    turnMeasures(context.drawing, names, transform);
    centre.addDataToWork();
    evaluate(context);
    refuseLess(context);
}

}  // namespace holdfast::editing
