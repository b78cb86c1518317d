#include "editing/Commands.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

void require(const Erase& edit, const Drawing& drawing) {
    requireSelection(drawing, edit.entities);
}

void perform(const Erase& edit, EditContext& context) {
    for (const std::string& name : requireSelection(context.drawing, edit.entities))
        context.drawing.erase(name);
}

}  // namespace holdfast::editing
