#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

/// How each entity of a drawing can still move, in the solver's terms and in words: "fixed", "fully determined",
/// "free", "free to slide along g3 and to turn about its start".
struct EntityFreedom {
    EntityMotions motions;
    std::string words;
};

/// In the order of the entities. Throws UnsolvableDocument for a drawing that the solver cannot read. Cost: see
/// DocumentSketch::freeMotions; the words look at every constraint and at the curves that it ties to the entity.
std::vector<EntityFreedom> spokenFreedom(const Document& document);

}  // namespace holdfast::editing
