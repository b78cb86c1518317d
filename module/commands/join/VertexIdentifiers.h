#pragma once

#include <yxbase/YxArray.h>

class YxDbPolyline;

namespace holdfast::module {

/// The identifiers of all vertices by vertex index; 0 where there is none.
YxArray<int> identifiersOf(const YxDbPolyline& polyline);

/// Writes the identifiers to the vertices from firstIndex on; 0 leaves a vertex as it is.
void writeForward(YxDbPolyline& polyline, int firstIndex, const YxArray<int>& identifiers);

/// Writes the identifiers last to first to the vertices from firstIndex on, then repairs the whole polyline.
void writeReversed(YxDbPolyline& polyline, int firstIndex, const YxArray<int>& identifiers);

}  // namespace holdfast::module
