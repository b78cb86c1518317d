#include "editing/Commands.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "editing/commands/offset/OffsetEntities.h"
#include "editing/constraints/NewConstraints.h"

namespace holdfast::editing {

namespace {

std::vector<OffsetEntities> resolved(const Offset& edit, const Drawing& drawing) {
    static constexpr std::string_view kEnd = "by";
    NamedCurves curves;
    for (const std::string& name : requireOnce(drawing, edit.entities, {&kEnd, 1}))
        curves.emplace_back(name, drawing.shape(name));
    if (edit.by.value == 0.0)
        throw RefusedWord({"an offset by 0 would lie on the curve itself; give another distance", {}, edit.by.column});
    std::vector<OffsetEntities> found;
    for (const NamedCurves& group : offsetGroups(curves))
        found.push_back(offsetOf(group, edit.by.value, edit.rounded));
    return found;
}

std::vector<std::string> addEntities(Drawing& drawing, const OffsetEntities& made, CopyNames& images) {
    std::vector<std::string> names;
    for (const OffsetEntity& entity : made.entities) {
        refuseUnsound("what lies beside " + entity.origin, entity.shape);
        names.push_back(drawing.add(entity.shape, entity.origin));
        if (entity.isImage)
            images.emplace(entity.origin, names.back());
    }
    return names;
}

Place placed(Place place, const std::string& name) {
    place.entity = name;
    return place;
}

/// The ends that meet, and arcs that run on smoothly.
std::vector<Constraint> tiesOf(const OffsetEntities& made, const std::vector<std::string>& names) {
    std::vector<Constraint> ties;
    for (const OffsetJoint& joint : made.joints)
        ties.push_back({.type = ConstraintType::coincident,
                        .refs = {placed(made.entities[joint.before].end, names[joint.before]),
                                 placed(made.entities[joint.behind].start, names[joint.behind])}});
    for (const OffsetJoint& joint : made.joints)
        if (joint.isSmooth)
            ties.push_back({.type = ConstraintType::tangent,
                            .refs = {placed(made.entities[joint.before].last, names[joint.before]),
                                     placed(made.entities[joint.behind].first, names[joint.behind])}});
    return ties;
}

}  // namespace

void require(const Offset& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Offset& edit, EditContext& context) {
    const std::vector<OffsetEntities> groups = resolved(edit, context.drawing);
    const CopiedConstraints constraints(context.drawing, valuesOf(edit.entities));
    CopyNames images;
    std::vector<Constraint> ties;
    for (const OffsetEntities& made : groups) {
        const std::vector<std::string> names = addEntities(context.drawing, made, images);
        for (Constraint& tie : tiesOf(made, names))
            ties.push_back(std::move(tie));
        context.remarks.insert(context.remarks.end(), made.remarks.begin(), made.remarks.end());
    }
    constraints.addTo(context.drawing, images, {}, CopiedKinds::geometric);
    addNew(context.drawing, std::move(ties));
    for (const auto& [origin, image] : images)
        if (std::holds_alternative<PolylineShape>(context.drawing.shape(image)))
            context.drawing.tieCorners(image);
}

}  // namespace holdfast::editing
