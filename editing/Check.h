#pragma once

#include <optional>

#include "editing/Edit.h"
#include "editing/EditError.h"
#include "editing/Uses.h"

namespace holdfast::hosting {
class Drawing;
}  // namespace holdfast::hosting

namespace holdfast::editing {

/// Why an edit cannot be understood on a drawing, or nothing when it can: its entities are there, are of a kind that
/// the command takes and may be changed, its points lie on them, its places, corners and properties exist. Does nothing
/// to the drawing. What only the doing shows is not known yet: constraints that do not allow it. An undo is understood
/// by every drawing; whether there is an edit to take back the session knows. Cost: linear in the named entities, and
/// for Stretch in the drawing.
std::optional<Refusal> check(const Edit& edit, const Drawing& drawing);

}  // namespace holdfast::editing
