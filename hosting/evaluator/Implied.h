#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// What a dimension of the drawing measures now, in the drawing's length unit or radians, whatever its value says.
/// Throws SketchError for a constraint that is none, or that its entities cannot have.
double measureOf(const Document& document, const std::string& dimension);

/// True when a constraint of the drawing holds as it is drawn, to what an edit leaves as held.
bool isHeld(const Document& document, const std::string& constraint);

/// The constraints that already say all that one of the drawing says, as few as can be: without any of them it would
/// say something of its own. Nothing when it does; none of them when its places are fixed anyway. That constraint holds
/// as drawn. Cost: some diagnoses of the drawing, which grow with the logarithm of its constraints for each one that is
/// named.
std::optional<std::vector<std::string>> implying(const Document& document, const std::string& constraint);

}  // namespace holdfast::hosting
