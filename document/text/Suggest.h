#pragma once

#include <span>
#include <string>
#include <string_view>

#include "document/Uses.h"

namespace holdfast::document {

/// The candidate that a misspelt word most likely meant, compared without regard to case; empty when none is near.
/// Near is at most one slip (a letter too many, missing, wrong, or two swapped) for every three letters.
std::string_view nearestWord(std::string_view word, std::span<const std::string_view> candidates);

/// "; did you mean "centre"?" for a word with a near candidate, else nothing.
std::string suggestion(std::string_view word, std::span<const std::string_view> candidates);

/// The text in double quotes, shortened in the middle when it is longer than a message bears.
std::string inQuotes(std::string_view text);

/// "a, b or c".
std::string oneOf(std::span<const std::string_view> words);

/// "a, b and c".
std::string allOf(std::span<const std::string> words);

}  // namespace holdfast::document
