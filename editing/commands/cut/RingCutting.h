#pragma once

#include <functional>

#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Cuts out of an open polyline what lies between two parameters, or cuts it at one, and drives its command's centre.
using OpenCut = std::function<void(double firstParam, double lastParam)>;

/// Cuts out of a closed polyline what lies between two parameters, from the first one on in the polyline's direction;
/// with equal parameters it is only opened there. One open polyline is left. It is first counted from a vertex in the
/// part that goes and opened at that, so that its segments run through.
void cutRing(const EditContext& context, const std::string& name, double fromParam, double toParam, const OpenCut& cut);

}  // namespace holdfast::editing
