#include <algorithm>

#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/Copying.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

void require(const Mirror& edit, const Drawing& drawing) {
    requireSelection(drawing, edit.entities, "about");
    reflection(edit.first, edit.second);
}

void perform(const Mirror& edit, EditContext& context) {
    const std::vector<std::string> names = requireSelection(context.drawing, edit.entities, "about");
    const PlaneTransform mirror = reflection(edit.first, edit.second);
    if (edit.keep) {
        addCopies(context.drawing, names, CopiedConstraints(context.drawing, names), mirror);
        return;
    }
    context.edited = names;
    refuseMovingFixed(context, names, mirror);
    turnMeasures(context.drawing, names, mirror);
    for (const std::string& name : names)
        moveEntity(context, name, mirror);
    followPlaced(context, names);
    refuseLess(context);
    context.opensAgain = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
        return isSeenFromBelow(context.drawing.entity(name));
    });
}

}  // namespace holdfast::editing
