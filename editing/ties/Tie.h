#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// A constraint that an edit gives besides what the module leaves: one that holds as drawn, or one that stood before
/// and has its places elsewhere now.
struct Tie {
    Constraint constraint;  ///< without an id: new; else under the id of what it carries on
    std::string reason{};  ///< in the user's words: "the new end of g3 lies on g7"; empty: what fates say by themselves
};

/// Why ties were given, by the ids of their constraints.
using TieReasons = std::unordered_map<std::string, std::string>;

/// A tie of a kind between places.
inline Tie tieOf(ConstraintType type, std::vector<Place> places, std::string reason) {
    return {{.id = {}, .type = type, .refs = std::move(places)}, std::move(reason)};
}

}  // namespace holdfast::editing
