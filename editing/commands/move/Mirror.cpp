#include <array>

#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/Verbs.h"
#include "editing/commands/move/MirroredConstraints.h"
#include "editing/commands/move/Moving.h"

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

void runMirror(EditText& text, EditContext& context) {
    static constexpr std::array<std::string_view, 1> ends{"about"};
    const std::vector<std::string> names = takeSelection(text, context, ends);
    text.expect("about");
    const Vec2 first = text.point("the first point of the mirror line");
    const Vec2 second = text.point("the second point of the mirror line");
    const bool keeps = text.accept("keep");
    text.expectEnd();
    const PlaneTransform mirror = reflection(first, second);
    if (keeps)
        return addMirrored(context, names, mirror);
    context.edited = names;
    refuseMovingFixed(context, names, mirror);
    context.opensAgain = true;
    turnMeasures(context.drawing, names, mirror);
    for (const std::string& name : names)
        moveEntity(context, name, mirror);
    followPlaced(context, names);
    refuseLess(context);
}

}  // namespace

const EditVerb kMirrorVerb{
    "mirror", "mirror ENTITY... about POINT POINT [keep]", "mirror g1 g2 about 0,0 0,1",
    "reflects entities in the line through two points, or adds their reflection with its constraints", &runMirror};

}  // namespace holdfast::editing
