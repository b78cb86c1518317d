#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "editing/Uses.h"

namespace holdfast::editing {

/// What is to blame when an edit is refused.
enum class RefusalCause {
    text,         ///< it is no edit
    word,         ///< one of its words does not fit this drawing, or is beyond what the command takes
    geometry,     ///< the shapes do not allow it, or the drawing as it is
    constraints,  ///< the constraints do not
    memory,       ///< there is not enough of it
    failure       ///< the host, or we
};

/// A refusal for programs: what its sentence says for people.
struct RefusalFacts {
    RefusalCause cause = RefusalCause::geometry;
    std::size_t column = 0;                  ///< of the edit's text, counted from 1; 0: not known
    std::vector<std::string> constraints{};  ///< ids of those in the way, as the drawing has them
    double followed = 0.0;                   ///< the part of its way that the edit could be followed; below 1
    friend bool operator==(const RefusalFacts&, const RefusalFacts&) = default;
};

}  // namespace holdfast::editing
