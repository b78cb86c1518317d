#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// What a drag would move, without what else becomes of the drawing: what a trial tells of it while a hand pulls.
struct Glimpse {
    std::vector<std::string> edited;      ///< the entities that are held
    std::vector<Entity> entities;         ///< those that would be elsewhere and are looked at, as they would be
    std::vector<Constraint> constraints;  ///< measured dimensions on them, with what they would measure
};

}  // namespace holdfast::editing
