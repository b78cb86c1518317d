#pragma once

#include <functional>
#include <set>
#include <string>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// The constraints of a drawing that say that points meet, or lie on curves, where others say so already: contacts
/// between ends (tangent or at right angles) say that these meet. Those that were so before are not meant. By their
/// ids. Cost: linear in both drawings, but for the search for names.
std::set<std::string, std::less<>> idleCoincidences(const Document& before, const Document& after);

}  // namespace holdfast::formats
