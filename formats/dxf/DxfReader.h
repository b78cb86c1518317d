#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfLayout.h"

namespace holdfast::formats {

/// Something in a DXF file that the drawing does not hold, and how often it occurs.
struct DxfNotice {
    std::string what;
    int count = 0;

    friend bool operator==(const DxfNotice&, const DxfNotice&) = default;
};

/// A plain drawing read from a DXF file, entities named g0, g1, ... in the order of the file.
struct DxfDrawing {
    Document document;
    std::vector<DxfNotice> notUnderstood;  ///< entities that are missing from the document, by kind
    std::vector<DxfNotice> notMeasured;    ///< dimensions that are drawn only, by why that is
    std::vector<DxfNotice> dropped;        ///< properties that its entities have lost: width, height above the plane
    DxfLayout layout;                      ///< for writing the file again
};

/// Reads LINE, ARC, CIRCLE, ELLIPSE, LWPOLYLINE, POLYLINE, SPLINE, RAY, XLINE, POINT, TEXT and MTEXT from the section
/// ENTITIES of a DXF text, with layers, colours, line types and widths, INSERT, DIMENSION and HATCH with the blocks,
/// named insert:0, insert:1, ..., dimension:0, ..., hatch:0, ..., and the unit of length from the header (millimetres
/// when it has none). A DIMENSION that stands on entities is a measured dimension, too, named c0, c1, .... Everything
/// else is counted. Throws DrawingError, with the line, for a text that is no DXF or breaks off.
DxfDrawing readDxf(std::string_view text, const std::string& fileName);

}  // namespace holdfast::formats
