#pragma once

#include <optional>
#include <vector>

#include "hosting/Uses.h"
#include "hosting/evaluator/EditRequest.h"

namespace holdfast::hosting {

/// The constraints on edited elements that have to go for the request to be met, of those that may go. Earlier drawn
/// ones are kept as long as they can be: each is added to those that hold already, and stays when all of them can hold
/// together. Ascending; nothing when those that may not go are against it already, or when trying that out would take
/// more than about a second. The sketch is only read. What lies on edited elements alone is judged as it stands; the
/// others cost one solve when all of them hold, else about one for each that does not, times the logarithm of their
/// number.
std::optional<std::vector<int>> constraintsAgainst(const SketchData& sketch, const EditRequest& request,
                                                   const std::vector<int>& mayGo);

/// The binding constraints that have one of these elements, ascending.
std::vector<int> constraintsTouching(const SketchData& sketch, const std::vector<int>& edited);

}  // namespace holdfast::hosting
