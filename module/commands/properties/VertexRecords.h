#pragma once

#include "commands/properties/PropertyChange.h"

#include <optional>

class YxDbPolyline;
class YxDbSpline;

namespace holdfast::module {

/// A moved vertex; nothing for another property and for a vertex that the polyline does not have.
std::optional<PropertiesOriRecord> polylineRecord(const YxDbPolyline& polyline, int property, int vertex,
                                                  const YxGePoint3d& newVertex);
/// A moved control point; nothing for another property.
std::optional<PropertiesOriRecord> splineRecord(const YxDbSpline& spline, int property, int controlPoint,
                                                const YxGePoint3d& newPoint);

}  // namespace holdfast::module
