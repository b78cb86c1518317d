#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfOldForm.h"

namespace holdfast::formats {

struct DxfOutput {
    std::string text;
    std::vector<DxfNote> notes;        ///< in the order of the document
    std::size_t lostConstraints = 0;   ///< a DXF file holds none but measured dimensions of its own
    std::size_t lostParameters = 0;    ///< nor these
    std::size_t lostReferences = 0;    ///< the oldest form has no blocks
    std::vector<std::string> redrawn;  ///< dimensions that follow what they measure, with a picture as it was
    std::vector<std::string> left;     ///< dimensions as they were, which the drawing has no more
    std::string lostFacts;             ///< a sentence on what else the file has not, or empty
    double tolerance = 0.0;            ///< of the curves that were flattened, in the drawing's unit
};

/// The document's entities in the oldest common form of DXF (LINE, ARC, CIRCLE, POINT, TEXT, POLYLINE), which every
/// program reads: one section, no header. Ellipses and splines become polylines that stay within the tolerance, rays
/// and xlines are left out; the notes name each of them. Helper geometry stands on the layer CONSTRUCTION, fixed
/// references on REFERENCE, all else on 0. The form has no unit: numbers are in the document's.
/// Throws DrawingError for a document that does not pass checkDocument, and for a tolerance that is not above 0.
DxfOutput dxfText(const Document& document, double tolerance = 0.01);

/// What dxfText throws before it begins.
void checkForDxf(const Document& document, double tolerance);

}  // namespace holdfast::formats
