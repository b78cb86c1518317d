#pragma once

#include <string>

#include "document/Document.h"
#include "editing/Uses.h"
#include "geometry/CurveEnd.h"

namespace holdfast::editing {

/// The curve with one end moved along it until it is longer by that much, or shorter. Lines, arcs and elliptical arcs
/// grow along their carrier, polylines along their outermost segment, splines along the curve of their outermost span.
/// EditError, which names the curve, where that cannot be: no such end, nothing would be left, more than a full turn.
Shape lengthened(const Shape& curve, const std::string& name, CurveEnd end, double by);

}  // namespace holdfast::editing
