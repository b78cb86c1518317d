#pragma once

#include <optional>
#include <vector>

#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {

/// What two pieces in a frame have in common when one carrier bears both: stretches, and points where they only meet
/// end to end. No value where the carriers differ (or where both are splines that differ): those are to be intersected.
/// The ends of a stretch may be infinite.
std::optional<std::vector<Contact>> sharedCarrierContacts(const Piece& a, const Piece& b);

}  // namespace holdfast::geometry
