#include "editing/RefusedReferences.h"

#include "document/BlockContents.h"

namespace holdfast::editing {

namespace {

std::string whatCanBeDone(const BlockReference& reference) {
    if (reference.kind != BlockReference::Kind::insert)
        return "; it is drawn, and cannot be edited";
    return "; it is moved, rotated, mirrored, copied and erased as a whole, and \"explode " + reference.id +
           "\" makes entities of it";
}

std::string spokenKind(const BlockReference& reference) {
    return reference.kind == BlockReference::Kind::insert ? "block reference" : std::string(typeName(reference.kind));
}

}  // namespace

void refuseReference(const Drawing& drawing, const Name& name) {
    const OpenReferences& references = drawing.references();
    const auto refuse = [&](const BlockReference& reference, const std::string& what) {
        throw RefusedWord({name.value + " is " + what, whatCanBeDone(reference), name.column});
    };
    if (const BlockReference* reference = references.find(name.value))
        refuse(*reference, "a " + spokenKind(*reference));
    for (const std::string_view whole : wholesOf(name.value))
        if (const BlockReference* reference = references.find(whole); reference && isPartOf(*reference, name.value))
            refuse(*reference, "a part of the " + spokenKind(*reference) + " " + reference->id);
}

}  // namespace holdfast::editing
