#pragma once

#include <vector>

#include <yxdb/YxDbObjectId.h>

class YxDbPolyline;

namespace holdfast {

/// The constraint group in which the entity has constrained geometry, or the null id. Derived from the dependencies
/// among the entity's reactors.
YxDbObjectId groupOf(const YxDbObjectId& entity);

/// The vertices at the ends of a polyline's constrained segments, ascending, once each, counted from 0.
std::vector<int> constrainedVertices(const YxDbPolyline& polyline);

}  // namespace holdfast
