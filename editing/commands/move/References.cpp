#include "editing/commands/move/References.h"

#include <unordered_set>
#include <utility>

#include "document/BlockContents.h"
#include "document/BlockPlacement.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

namespace {

/// What an edit names, references apart.
struct Parted {
    std::vector<Name> entities;
    std::vector<std::string> references;
};

void refuseDrawnOnly(const BlockReference& reference) {
    if (reference.kind != BlockReference::Kind::insert)
        throw EditError(reference.id + " is a " + std::string(typeName(reference.kind)) +
                        ", which is drawn and cannot be edited");
}

Parted partedThings(const Drawing& drawing, const std::vector<Name>& names) {
    Parted parted;
    std::unordered_set<std::string_view> seen;
    for (const Name& name : names) {
        const BlockReference* reference = drawing.references().find(name.value);
        if (reference == nullptr || !drawing.id(name.value).isNull()) {
            parted.entities.push_back(name);
            continue;
        }
        refuseDrawnOnly(*reference);
        if (!seen.insert(name.value).second)
            throw EditError(name.value + " is named twice; name each block reference once");
        parted.references.push_back(name.value);
    }
    return parted;
}

/// Names of parts stay; where one has been taken since, the part gets a number behind it.
std::string freeNameOf(const Drawing& drawing, const std::string& wanted) {
    constexpr int firstNumber = 2;
    std::string name = wanted;
    const auto isTaken = [&] { return !drawing.id(name).isNull() || drawing.references().find(name) != nullptr; };
    for (int number = firstNumber; isTaken(); ++number)
        name = wanted + "_" + std::to_string(number);
    return name;
}

void explode(Drawing& drawing, const BlockReference& reference) {
    forEachPart(
        reference,
        [&](Entity&& part) {
            part.id = freeNameOf(drawing, part.id);
            drawing.add(part);
            if (std::holds_alternative<PolylineShape>(part.shape))
                drawing.tieCorners(part.id);
        },
        [&](BlockReference&& inner) {
            inner.id = freeNameOf(drawing, inner.id);
            drawing.references().write(std::move(inner));
        });
}

void refuseTooMuch(const OpenReferences& references) {
    if (references.cost() > kMostShown)
        throw EditError("block references would show more than " + spoken(kMostShown) +
                        " parts, which is more than can be drawn");
}

}  // namespace

Things requireThings(const Drawing& drawing, const std::vector<Name>& names, std::string_view end) {
    Parted parted = partedThings(drawing, names);
    Things things{{}, std::move(parted.references)};
    if (!parted.entities.empty() || things.references.empty())
        things.entities = requireSelection(drawing, parted.entities, end);
    return things;
}

Things requireThings(const Drawing& drawing, const std::vector<Name>& names, std::span<const std::string_view> ends) {
    Parted parted = partedThings(drawing, names);
    Things things{{}, std::move(parted.references)};
    if (!parted.entities.empty() || things.references.empty())
        things.entities = requireOnce(drawing, parted.entities, ends);
    return things;
}

void moveReferences(EditContext& context, const std::vector<std::string>& references, const PlaneTransform& transform) {
    for (const std::string& name : references) {
        OpenReferences& all = context.drawing.references();
        all.write(transformed(*all.find(name), transform));
        context.edited.push_back(name);
    }
}

void copyReferences(EditContext& context, const std::vector<std::string>& references, const PlaneTransform& transform) {
    OpenReferences& all = context.drawing.references();
    for (const std::string& name : references) {
        BlockReference copy = transformed(*all.find(name), transform);
        copy.id = all.freshName(name);
        all.write(std::move(copy));
        refuseTooMuch(all);
    }
}

void explodeReferences(EditContext& context, const std::vector<std::string>& references) {
    for (const std::string& name : references) {
        const BlockReference reference = *context.drawing.references().find(name);
        context.drawing.references().erase(name);
        explode(context.drawing, reference);
    }
}

}  // namespace holdfast::editing
