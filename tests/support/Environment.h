#pragma once

#include <cstdlib>

namespace holdfast::testing {

/// The number that a variable of the environment gives.
inline int numberFrom(const char* variable, int otherwise) {
    const char* text = std::getenv(variable);
    return text == nullptr ? otherwise : std::atoi(text);
}

}  // namespace holdfast::testing
