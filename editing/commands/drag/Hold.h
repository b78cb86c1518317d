#pragma once

#include <string>
#include <vector>

#include "editing/Edit.h"
#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// What the user holds: entities, or some grips of one.
struct Hold {
    std::vector<std::string> names;
    std::vector<int> grips;  ///< of the only entity; empty: all of them are held whole

    /// Where the grips are now; none for entities that are held whole.
    std::vector<Vec2> pointsIn(const Drawing& drawing) const;
};

/// RefusedWord or EditError for a drag that cannot be understood on the drawing.
Hold heldBy(const Drag& edit, const Drawing& drawing);

/// The second point of a ray or a construction line is none that constraints know: EditError where it is held.
void refuseTurning(const Drawing& drawing, const Hold& held);

}  // namespace holdfast::editing
