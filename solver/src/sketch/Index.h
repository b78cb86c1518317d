#pragma once

#include <cstddef>

#include "solver/src/Uses.h"

namespace holdfast::solver::detail {

/// Numbers of entities, values, unknowns and constraints are signed, as -1 says that there is none; lists are indexed
/// by what this makes of them.
constexpr std::size_t at(int number) {
    return static_cast<std::size_t>(number);
}

}  // namespace holdfast::solver::detail
