#pragma once

#include "document/Document.h"
#include "report/Uses.h"

namespace holdfast::report {

/// Where two curves come closest: a point of each.
struct Gap {
    Vec2 from, to;
};

/// The nearest points of two curves or points. Lines count as unbounded and arcs as circles, as in constraints; of two
/// lines the middle of the second counts (the base of an unbounded one), as it does in a distance. Exact for points,
/// round curves and lines; else found by going back and forth.
Gap gapBetween(const Shape& first, const Shape& second);

}  // namespace holdfast::report
