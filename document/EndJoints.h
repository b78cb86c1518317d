#pragma once

#include <cstddef>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// One end of an entity of a document.
struct EntityEnd {
    std::size_t entity = 0;
    bool atStart = true;

    friend bool operator==(const EntityEnd&, const EntityEnd&) = default;
};

constexpr std::size_t kNoEnd = static_cast<std::size_t>(-1);

/// A number for each end: 2 * entity for its start, one more for its end.
inline std::size_t numberOf(EntityEnd end) {
    return 2 * end.entity + (end.atStart ? 0 : 1);
}
inline EntityEnd endOfNumber(std::size_t number) {
    return {number / 2, number % 2 == 0};
}

/// For every end its partner: the only other end that coincidences of top level bring to the same point, both of lines
/// or arcs that can be segments of one polyline; kNoEnd where there is none.
std::vector<std::size_t> jointsOf(const Document& document, double tolerance);

}  // namespace holdfast::document
