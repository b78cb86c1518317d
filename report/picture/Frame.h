#pragma once

#include <string>

#include "document/Document.h"
#include "report/Uses.h"
#include "report/picture/Outline.h"

namespace holdfast::report {

/// How drawing units become a picture's units: the same scale in x and y, y turned down.
struct Frame {
    Box window;          ///< what the picture shows, in drawing units
    double scale = 1.0;  ///< picture units per drawing unit
    double width = 0.0, height = 0.0;

    Vec2 toPicture(Vec2 point) const { return {(point.x - window.low.x) * scale, (window.high.y - point.y) * scale}; }
    /// A direction of the drawing as a direction of the picture, of the same length.
    static Vec2 turned(Vec2 direction) { return {direction.x, -direction.y}; }
};

/// What must be seen of a drawing: its own geometry, and its reference geometry where that is not far away.
Box windowOf(const Document& document);

/// A frame of the given width round a window, with a margin on all sides for marks and labels. Flat drawings get a low
/// picture and tall ones a high one, within `lowest` and `highest` times the width; what is left over stays empty.
Frame frameAround(const Box& window, double width, double lowest, double highest);

/// The same frame without what is left over at the sides beyond the margins, but not below a share of its width.
Frame trimmed(const Frame& frame, const Box& window, double narrowest);

/// The outline as the value of an SVG path's d attribute, with so many decimals. Arcs stay arcs.
std::string pathData(const Outline& outline, const Frame& frame, int places);

}  // namespace holdfast::report
