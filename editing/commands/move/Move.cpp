#include "editing/Commands.h"
#include "editing/commands/move/Aligning.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/References.h"

namespace holdfast::editing {

namespace {

Things resolved(const Move& edit, const Drawing& drawing) {
    Things things = requireThings(drawing, edit.entities, "by");
    if (edit.by == Vec2{})
        throw EditError("a displacement of 0,0 moves nothing; give another one");
    return things;
}

}  // namespace

void require(const Move& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Move& edit, EditContext& context) {
    const auto [names, references] = resolved(edit, context.drawing);
    const PlaneTransform shift = translation(edit.by);
    if (!names.empty())
        alignBy(context, names, shift);
    moveReferences(context, references, shift);
}

}  // namespace holdfast::editing
