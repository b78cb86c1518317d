#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// What an entity lost on the way into a DXF file.
enum class DxfLoss {
    flattened,  ///< a curve that the file cannot hold went out as a polyline within the tolerance
    split,      ///< a paragraph went out as single lines of text
    leftOut     ///< the file cannot hold it at all
};

struct DxfNote {
    std::string entity;  ///< its id
    DxfLoss loss = DxfLoss::leftOut;
    std::size_t pieces = 0;  ///< segments of the polyline, or lines of text

    friend bool operator==(const DxfNote&, const DxfNote&) = default;
};

struct DxfOutput {
    std::string text;
    std::vector<DxfNote> notes;       ///< in the order of the document
    std::size_t lostConstraints = 0;  ///< a DXF file holds none
    std::size_t lostParameters = 0;   ///< nor these
    double tolerance = 0.0;           ///< of the curves that were flattened, in the drawing's unit
};

/// The document's entities in the oldest common form of DXF (LINE, ARC, CIRCLE, POINT, TEXT, POLYLINE), which every
/// program reads: one section, no header. Ellipses and splines become polylines that stay within the tolerance, rays
/// and xlines are left out; the notes name each of them. Helper geometry stands on the layer CONSTRUCTION, fixed
/// references on REFERENCE, all else on 0. The form has no unit: numbers are in the document's.
/// Throws DrawingError for a document that does not pass checkDocument, and for a tolerance that is not above 0.
DxfOutput dxfText(const Document& document, double tolerance = 0.01);

}  // namespace holdfast::formats
