#pragma once

#include "document/Document.h"
#include "report/Uses.h"

namespace holdfast::report {

/// Where two curves come closest: a point of each.
struct Gap {
    Vec2 from, to;
};

/// The nearest points of two curves or points. Lines count as unbounded and arcs as circles, as in constraints. Exact
/// where one of them is a point or round or both are parallel lines; else found by going back and forth.
Gap gapBetween(const Shape& first, const Shape& second);

}  // namespace holdfast::report
