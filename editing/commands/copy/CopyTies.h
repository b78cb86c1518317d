#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Edit.h"
#include "editing/Uses.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// What makes copies follow their originals: equal lengths and radii; parallel lines, in rings at right angles after a
/// quarter turn; and spacing: each first step of a row by its dimensions, each further one as wide as the one before
/// it. Rings have no spacing of their own. `copies` stand in the order of copyPlaces.
///
/// Some of them may follow from others, and the earlier one is to be taken: of entities that hang together the first is
/// spaced before all else, so that the others follow it where they can, and one dimension says how far apart copies
/// are.
std::vector<Constraint> tiesOfCopies(const Drawing& drawing, const Copy& edit, const std::vector<CopyNames>& copies);

}  // namespace holdfast::editing
