#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// What an entity lost on the way into a DXF file.
enum class DxfLoss {
    flattened,   ///< a curve that the file cannot hold went out as a polyline within the tolerance
    split,       ///< a paragraph went out as single lines of text
    leftOut,     ///< the file cannot hold it at all
    firstOfKind  ///< nothing: it is the first of its kind in the file, in the oldest form that the file can have
};

struct DxfNote {
    std::string entity;  ///< its id
    DxfLoss loss = DxfLoss::leftOut;
    std::size_t pieces = 0;  ///< segments of the polyline, or lines of text
    std::string kind{};      ///< firstOfKind: what the file calls it

    friend bool operator==(const DxfNote&, const DxfNote&) = default;
};

/// A shape as the oldest form of DXF can say it: in lines, arcs, circles, points, polylines and lines of text.
struct OldForm {
    std::vector<Shape> shapes;  ///< empty: it cannot
    std::optional<DxfLoss> loss{};
    std::size_t pieces = 0;
};

/// Ellipses and splines become polylines that stay within the tolerance, which is above 0; paragraphs become lines of
/// text; rays and xlines cannot be said.
OldForm oldForm(const Shape& shape, double tolerance);

}  // namespace holdfast::formats
