#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// The constraints that already say all that one of the drawing says, as few as can be: without any of them it would
/// say something of its own. Nothing when it does; none of them when its places are fixed anyway. That constraint holds
/// as drawn. Cost: some diagnoses of the drawing, which grow with the logarithm of its constraints for each one that is
/// named.
std::optional<std::vector<std::string>> implying(const Document& document, const std::string& constraint);

}  // namespace holdfast::hosting
