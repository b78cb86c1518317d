#pragma once

#include <nlohmann/json_fwd.hpp>

#include "apps/window/Uses.h"
#include "document/DrawingChange.h"

namespace holdfast::window {

/// Entities and constraints as drawing files have them, with what the page shows beside it: a dimension's label. No
/// check is made: parts of a drawing are told as well as whole ones.
nlohmann::ordered_json entityJson(const Entity& entity);
nlohmann::ordered_json constraintJson(const Constraint& constraint);
nlohmann::ordered_json parametersJson(const std::vector<Parameter>& parameters);

/// All of a drawing.
nlohmann::ordered_json drawingJson(const Document& document);

/// What of a drawing is another than before: what is there now, and the names of what is gone.
nlohmann::ordered_json changeJson(const DrawingChange& change);

}  // namespace holdfast::window
