#pragma once

#include <string>
#include <vector>

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

// How editing commands meet the constraint network.

/// True for an entity whose geometry a constraint group holds: it moves by evaluation only.
bool isConstrained(const EditContext& context, const std::string& name);

/// The ids of entities in their order.
YxArray<YxDbObjectId> idsOf(const EditContext& context, const std::vector<std::string>& names);

/// The same entities, those that are constrained before the others: centres look for the group at the first one.
std::vector<std::string> constrainedFirst(const EditContext& context, std::vector<std::string> names);

/// Has a centre delete what it has collected; what it deleted before went at once.
template <class Centre, class... Edited>
void deleteCollected(EditContext& context, Centre& centre, Edited... edited) {
    context.reasons.noteAtOnce(context.drawing);
    centre.deleteConstraint(edited...);
}

/// Tells the network that geometry of the drawing's group has changed.
void markChanged(const EditContext& context);

/// Has the host evaluate the network, once it is noted why constraints were deleted until now; EditError when the
/// constraints cannot be satisfied.
void evaluate(const EditContext& context);

/// For edits that the host has done itself: entities lie where the user wants them, and what is tied to them follows.
/// The evaluator learns this as it does of a mirror, which is such an edit. EditError as above.
void followPlaced(const EditContext& context, const std::vector<std::string>& names);

/// For edits that are done as they were typed or not at all: EditError when the last evaluation came only near to what
/// they asked for.
void refuseLess(const EditContext& context);

/// Puts every entity back to where it was when the drawing told this change; linear in what has changed.
void putBack(const EditContext& context, const DrawingChange& earlier);

}  // namespace holdfast::editing
