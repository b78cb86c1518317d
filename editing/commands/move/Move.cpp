#include "editing/Commands.h"
#include "editing/commands/move/Aligning.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

namespace {

std::vector<std::string> resolved(const Move& edit, const Drawing& drawing) {
    std::vector<std::string> names = requireSelection(drawing, edit.entities, "by");
    if (edit.by == Vec2{})
        throw EditError("a displacement of 0,0 moves nothing; give another one");
    return names;
}

}  // namespace

void require(const Move& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Move& edit, EditContext& context) {
    alignBy(context, resolved(edit, context.drawing), translation(edit.by));
}

}  // namespace holdfast::editing
