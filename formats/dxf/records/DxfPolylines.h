#pragma once

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/records/DxfHandles.h"
#include "formats/dxf/records/DxfItems.h"

namespace holdfast::formats {

/// Gives an LWPOLYLINE, or a POLYLINE with its vertices, other vertices. A vertex that was there keeps what stands
/// beside it; a new one has the widths of the one before it.
void rewritePolyline(DxfItems& record, const PolylineShape& before, const PolylineShape& now, DxfHandles& handles);

/// The records of a POLYLINE: its own, its vertices, its end. Of other entities there is one.
std::vector<DxfItems> partsOf(const DxfItems& record);

}  // namespace holdfast::formats
