#include <algorithm>

#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/commands/move/MirroredConstraints.h"
#include "editing/commands/move/Moving.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

namespace {

/// Copies are new geometry with the constraints that hold among the originals.
void addMirrored(const EditContext& context, const std::vector<std::string>& names, const PlaneTransform& mirror) {
    std::unordered_map<std::string, std::string> copies;
    for (const std::string& name : names) {
        Shape image = transformed(context.drawing.shape(name), mirror);
        if (auto* polyline = std::get_if<PolylineShape>(&image))
            polyline->ids.assign(polyline->vertices.size(), 0);
        copies.emplace(name, context.drawing.add(image, name));
    }
    copyConstraints(context.drawing, copies, mirror);
    for (const auto& [name, copy] : copies)
        if (std::holds_alternative<PolylineShape>(context.drawing.shape(copy)))
            context.drawing.tieCorners(copy);
}

}  // namespace

void require(const Mirror& edit, const Drawing& drawing) {
    requireSelection(drawing, edit.entities, "about");
    reflection(edit.first, edit.second);
}

void perform(const Mirror& edit, EditContext& context) {
    const std::vector<std::string> names = requireSelection(context.drawing, edit.entities, "about");
    const PlaneTransform mirror = reflection(edit.first, edit.second);
    if (edit.keep)
        return addMirrored(context, names, mirror);
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
