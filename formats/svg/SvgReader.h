#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// Something in a picture that the drawing does not hold, and how often it occurs.
struct SvgNotice {
    std::string what;
    int count = 0;

    friend bool operator==(const SvgNotice&, const SvgNotice&) = default;
};

/// A plain drawing read from an SVG picture, entities named g0, g1, ... in the order in which they are drawn.
struct SvgDrawing {
    Document document;
    std::vector<SvgNotice> notUnderstood;  ///< elements that are missing from the document, by kind and reason
    std::vector<SvgNotice> dropped;        ///< properties that its entities have lost: fill, stroke-width, clip-path
    int roundCubics = 0;                   ///< cubic pieces that are read as the arcs that they stand for
    bool isMeasured = true;                ///< false: the picture says no unit of length, and is taken as pixels
};

/// Reads path, line, polyline, polygon, rect, circle and ellipse with their transforms, also where they are used again
/// or stand in a picture in the picture. Lengths are the true ones, in mm, cm or in, whichever the picture is measured
/// in; y looks upwards from its lower edge. Groups with a label are layers, colours of strokes those of the entities,
/// but for black, which is how a drawing is drawn anyway. Throws DrawingError, with the line, for what is not
/// well-formed, for numbers beyond any drawing, and for what is meant to fill the memory.
SvgDrawing readSvg(std::string_view text, const std::string& fileName);

}  // namespace holdfast::formats
