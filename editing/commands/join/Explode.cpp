#include "document/Places.h"
#include "editing/Commands.h"
#include "editing/commands/join/ExplodedConstraints.h"
#include "editing/commands/move/References.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Polylines.h"

namespace holdfast::editing {

namespace {

Things resolved(const Explode& edit, const Drawing& drawing) {
    Things things = requireThings(drawing, edit.entities);
    for (const std::string& name : things.entities)
        if (!std::holds_alternative<PolylineShape>(drawing.shape(name)))
            throw EditError(name + " is no polyline; only polylines and block references can be exploded");
    return things;
}

bool hasLength(const PolylineShape& polyline, std::size_t segment) {
    const Vec2 from = polyline.vertices[segment], to = polyline.vertices[segmentEndVertex(polyline, segment)];
    return distance(from, to) > kSamePoint * (1.0 + norm(from));
}

ExplodedPolyline addPieces(Drawing& drawing, const std::string& name) {
    ExplodedPolyline polyline{.shape = std::get<PolylineShape>(drawing.shape(name)), .pieces = {}};
    for (std::size_t i = 0; i < segmentCount(polyline.shape); ++i)
        polyline.pieces.push_back(hasLength(polyline.shape, i) ? drawing.add(segmentCurve(polyline.shape, i), name)
                                                               : std::string());
    return polyline;
}

}  // namespace

void require(const Explode& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Explode& edit, EditContext& context) {
    const auto [names, references] = resolved(edit, context.drawing);
    context.edited = names;
    const Document before = context.drawing.around(names);
    ExplodedPolylines polylines;
    for (const std::string& name : names)
        polylines.emplace(name, addPieces(context.drawing, name));
    for (const std::string& name : names)
        context.drawing.erase(name);
    carryToPieces(context, before, polylines);
    explodeReferences(context, references);
}

}  // namespace holdfast::editing
