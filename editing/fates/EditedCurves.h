#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "editing/Uses.h"

namespace holdfast::editing {

/// What a command has told the module about a curve.
struct EditedCurve {
    std::string done;               ///< "cut", "extended", "filleted"
    std::vector<std::string> left;  ///< the entities that are left of it
};

/// By the name of the entity.
using EditedCurves = std::unordered_map<std::string, EditedCurve>;

}  // namespace holdfast::editing
