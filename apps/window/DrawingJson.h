#pragma once

#include "apps/window/Uses.h"
#include "document/DrawingChange.h"

namespace holdfast::window {

/// Entities and constraints as drawing files have them, with what the page shows beside it: a dimension's label. No
/// check is made: parts of a drawing are told as well as whole ones.
Json entityJson(const Entity& entity);
Json constraintJson(const Constraint& constraint);
Json parametersJson(const std::vector<Parameter>& parameters);

/// All of a drawing; as text it is made item by item, for a large one as one value takes ten times the room of its
/// text.
Json drawingJson(const Document& document);
std::string drawingText(const Document& document);

/// What of a drawing is another than before: what is there now, and the names of what is gone.
Json changeJson(const DrawingChange& change);

}  // namespace holdfast::window
