#include <algorithm>

#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/copy/Copying.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/commands/move/MirrorLine.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/References.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

namespace {

/// The line of the drawing, or through two points, at which is mirrored.
PlaneTransform mirrorOf(const Mirror& edit, const Drawing& drawing) {
    const Name& about = edit.about;
    if (about.value.empty())
        return reflection(edit.first, edit.second);
    requireEntity(drawing, about);
    if (std::find(edit.entities.begin(), edit.entities.end(), about) != edit.entities.end())
        throw RefusedWord({about.value + " cannot be mirrored at itself; choose another line", {}, about.column});
    if (const std::optional<PlaneTransform> mirror = reflectionAt(drawing.shape(about.value)))
        return *mirror;
    throw RefusedWord({about.value + " is no line; mirror at a line or through two points", {}, about.column});
}

/// Copies that are tied to the mirror line need no copy of the constraints, which follow from that.
void addMirrored(EditContext& context, const std::vector<std::string>& names, const PlaneTransform& mirror,
                 bool areTied) {
    const CopiedConstraints constraints(context.drawing, areTied ? std::vector<std::string>() : names);
    const MadeCopies made = addCopies(context.drawing, names, constraints, mirror);
    for (const std::string& name : names)
        if (areTied)
            context.copies.emplace_back(name, made.names.at(name));
}

void mirrorEntities(EditContext& context, const std::vector<std::string>& names, const PlaneTransform& mirror) {
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

}  // namespace

void require(const Mirror& edit, const Drawing& drawing) {
    requireThings(drawing, edit.entities, "about");
    mirrorOf(edit, drawing);
}

void perform(const Mirror& edit, EditContext& context) {
    const auto [names, references] = requireThings(context.drawing, edit.entities, "about");
    const PlaneTransform mirror = mirrorOf(edit, context.drawing);
    if (!names.empty() && edit.keep)
        addMirrored(context, names, mirror, context.givesTies && !edit.about.value.empty());
    else if (!names.empty())
        mirrorEntities(context, names, mirror);
    if (edit.keep)
        copyReferences(context, references, mirror);
    else
        moveReferences(context, references, mirror);
}

}  // namespace holdfast::editing
