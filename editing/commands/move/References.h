#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {

/// What a command works on that edits block references, too: as a whole, each with all that it shows.
struct Things {
    std::vector<std::string> entities, references;
};

/// The entities and the references that a command is to change: each at most once, no entity that may not move. `end`
/// is the word that ends their list in an edit's text. EditError for what is drawn only: dimensions and hatches.
Things requireThings(const Drawing& drawing, const std::vector<Name>& names, std::string_view end = {});

/// The same for a command that leaves them as they are.
Things requireThings(const Drawing& drawing, const std::vector<Name>& names, std::span<const std::string_view> ends);

/// Moves references.
void moveReferences(EditContext& context, const std::vector<std::string>& references, const PlaneTransform& transform);

/// Adds a copy of each under a transform. EditError where all references together would show more than can be drawn.
void copyReferences(EditContext& context, const std::vector<std::string>& references, const PlaneTransform& transform);

/// Makes entities of what references show, and references of what stands in their blocks by reference.
void explodeReferences(EditContext& context, const std::vector<std::string>& references);

}  // namespace holdfast::editing
