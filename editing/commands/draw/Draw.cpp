#include "document/Names.h"
#include "editing/Commands.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

Shape resolved(const Draw& edit, const Drawing& drawing) {
    const std::string& name = edit.as.value;
    if (!name.empty())
        requireNewName(drawing, edit.as);
    Shape shape = shapeOf(edit.figure);
    refuseUnsound(name.empty() ? "the " + std::string(typeName(shape)) : name, shape);
    return shape;
}

}  // namespace

void require(const Draw& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Draw& edit, EditContext& context) {
    const Shape shape = resolved(edit, context.drawing);
    const std::string name = edit.as.value.empty() ? context.drawing.freeNameFor(shape) : edit.as.value;
    context.drawing.add({.id = name, .shape = shape, .construction = edit.construction});
}

}  // namespace holdfast::editing
