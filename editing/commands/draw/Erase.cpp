#include "editing/Commands.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

void require(const Erase& edit, const Drawing& drawing) {
    requireSelection(drawing, edit.entities);
}

void perform(const Erase& edit, EditContext& context) {
    for (const std::string& name : requireSelection(context.drawing, edit.entities)) {
        for (const Constraint& constraint : context.drawing.around({name}).constraints)
            if (!constraint.implied)
                context.reasons.note(constraint.id, name + " was erased");
        context.drawing.erase(name);
    }
}

}  // namespace holdfast::editing
