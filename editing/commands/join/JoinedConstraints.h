#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "editing/Uses.h"
#include "editing/commands/join/Chaining.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

struct EditContext;

/// Which segments of a joined polyline an entity became.
struct JoinedSegments {
    std::size_t first = 0;
    std::size_t count = 0;
    bool reversed = false;  ///< they run against the entity
};

/// The segments of every piece of a chain, by the names of the pieces.
std::unordered_map<std::string, JoinedSegments> segmentsOf(const std::vector<ChainPiece>& pieces, std::size_t middle,
                                                           const Chain& chain);

/// Gives the polyline the constraints that held on its pieces and went with them, under their ids and with places on
/// its segments. Coincidences of ends that are one vertex now stay away, as do those that hold no longer, switched-off
/// ones and what helps others; it is noted why. What went with a composite comes back, and so does the composite when
/// none of its members stays away. `before` is what stood around the pieces. Linear in it.
void carryOver(const EditContext& context, const Document& before, const std::string& polyline,
               const std::unordered_map<std::string, JoinedSegments>& pieces);

/// What went with the composites that constraints of erased entities belonged to: members elsewhere come back as they
/// were, and so do composites all of whose members are there. It is noted why others do not.
void restoreComposites(const EditContext& context);

}  // namespace holdfast::editing
