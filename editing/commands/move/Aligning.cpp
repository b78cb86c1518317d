#include "editing/commands/move/Aligning.h"

#include "commands/align/ConstraintAlignCmdCenter.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/TransformedConstraints.h"

namespace holdfast::editing {

void alignBy(EditContext& context, const std::vector<std::string>& names, const PlaneTransform& transform) {
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
