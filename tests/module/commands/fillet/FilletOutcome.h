#pragma once

#include <ostream>
#include <string>

#include "host/model/Scene.h"

namespace holdfast::module {

/// What a fillet did and left.
struct Outcome {
    int deleted = 0;
    std::string changes;  ///< every change of what the drawing holds, with its arguments, in order
    std::string text;
    std::string dependencies;
    bool operator==(const Outcome&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Outcome& outcome);

/// From the scene and its journal, after a command that answered `deleted`.
Outcome outcomeOf(Scene& scene, int deleted);

/// True while the lines "away" and "far", their constraints and dependencies are as the random scenes have them.
bool isElsewhereUntouched(const Scene& scene);

}  // namespace holdfast::module
