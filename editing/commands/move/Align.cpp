#include "editing/Commands.h"
#include "editing/commands/move/Aligning.h"
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
    alignBy(context, requireSelection(context.drawing, edit.entities, "from"), transformOf(edit));
}

}  // namespace holdfast::editing
