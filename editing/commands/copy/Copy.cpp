#include <algorithm>
#include <array>
#include <set>

#include "editing/Commands.h"
#include "editing/commands/copy/CopyPlaces.h"
#include "editing/commands/copy/CopyTies.h"
#include "editing/commands/copy/Copying.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/References.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "editing/commands/network/NamedConstraints.h"
#include "editing/constraints/NewConstraints.h"

namespace holdfast::editing {

namespace {

struct ResolvedCopy {
    Things things;
    std::vector<PlaneTransform> places;
};

ResolvedCopy resolved(const Copy& edit, const Drawing& drawing) {
    static constexpr std::array<std::string_view, 2> ends{"by", "around"};
    return {requireThings(drawing, edit.entities, ends), copyPlaces(edit)};
}

void tellLeftOut(EditContext& context, const CopiedConstraints& constraints, const std::set<std::string>& leftOut) {
    if (leftOut.empty())
        return;
    const std::string list = spokenConstraints(constraints.document(), {leftOut.begin(), leftOut.end()});
    context.remarks.push_back("left out where " + std::string(leftOut.size() == 1 ? "it does" : "they do") +
                              " not hold of a copy: " + list);
}

void copyEntities(const Copy& edit, EditContext& context, const std::vector<std::string>& names,
                  const std::vector<PlaneTransform>& places) {
    const CopiedConstraints constraints(context.drawing, names);
    const CopiedKinds kinds = edit.linked ? CopiedKinds::geometric : CopiedKinds::all;
    std::set<std::string> leftOut;
    std::vector<CopyNames> copies;
    for (const PlaneTransform& place : places) {
        MadeCopies made = addCopies(context.drawing, names, constraints, place, kinds);
        leftOut.insert(made.leftOut.begin(), made.leftOut.end());
        copies.push_back(std::move(made.names));
    }
    tellLeftOut(context, constraints, leftOut);
    if (edit.linked)
        addNew(context.drawing, tiesOfCopies(context.drawing, edit, copies));
}

}  // namespace

void require(const Copy& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Copy& edit, EditContext& context) {
    const auto [things, places] = resolved(edit, context.drawing);
    Copy ofEntities = edit;
    std::erase_if(ofEntities.entities,
                  [&drawing = context.drawing](const Name& name) { return drawing.id(name.value).isNull(); });
    if (!things.entities.empty())
        copyEntities(ofEntities, context, things.entities, places);
    for (const PlaneTransform& place : places)
        copyReferences(context, things.references, place);
}

}  // namespace holdfast::editing
