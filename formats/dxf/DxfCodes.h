#pragma once

#include "formats/Uses.h"

namespace holdfast::formats {

// Group codes that mean the same on every entity.
inline constexpr int kHandle = 5, kClassMark = 100, kOwner = 330, kHardOwned = 360, kComment = 999;
/// What stands behind it belongs to an object within the entity.
inline constexpr int kEmbedded = 101;
/// Begins and ends a list in braces, of handles of other things.
inline constexpr int kList = 102;
/// It and all above hold data of other programs.
inline constexpr int kFirstForeign = 1000;

}  // namespace holdfast::formats
