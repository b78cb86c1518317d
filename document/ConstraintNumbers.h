#pragma once

#include <cstddef>
#include <string_view>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// No numbers beyond this are given or counted.
inline constexpr std::size_t kMostConstraintNumbers = 1'000'000'000;

/// The number in an id that an edit has given, 17 in "k17"; 0 for ids of another form.
std::size_t constraintNumberOf(std::string_view id);

/// How many numbers the constraints of a drawing tell to be used up: as many as there are, and those in their ids.
/// Linear in them.
std::size_t constraintNumbersTold(const Document& document);

/// Has the drawing know how many numbers are used up, where its constraints do not tell so many. Linear in them.
void keepConstraintNumbers(Document& document, std::size_t used);

}  // namespace holdfast::document
