#pragma once

#include <optional>

#include "editing/Uses.h"

namespace holdfast::editing {

/// Degrees of freedom before and after an edit; nothing for what the solver cannot read.
struct FreedomChange {
    std::optional<int> before, after;
    friend bool operator==(const FreedomChange&, const FreedomChange&) = default;
};

}  // namespace holdfast::editing
