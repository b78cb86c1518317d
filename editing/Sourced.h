#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <utility>

#include "editing/Uses.h"

namespace holdfast::editing {

/// A value of an edit, and the column of the edit's text in which it stands, counted from 1; 0 for a value that comes
/// from no text. The column is for messages only: two values are equal wherever they stand.
template <class T>
struct Sourced {
    T value{};
    std::size_t column = 0;

    Sourced() = default;
    template <class U>
    requires std::convertible_to<U, T> Sourced(U&& from, std::size_t at = 0)
        : value(std::forward<U>(from)), column(at) {}

    friend bool operator==(const Sourced& a, const Sourced& b) { return a.value == b.value; }
};

/// The name of an entity. Any text is one, also with spaces.
using Name = Sourced<std::string>;

}  // namespace holdfast::editing
