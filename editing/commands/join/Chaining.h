#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// An entity that is joined with others, as an open polyline of its own.
struct ChainPiece {
    std::string name;
    bool isPolyline = false;
    PolylineShape shape;
};

/// How one piece came to the chain.
struct ChainLink {
    std::size_t piece = 0;
    bool isBefore = false;      ///< it was put before what was there, else behind
    bool touchesStart = false;  ///< with its own start, else with its end
};

/// Pieces joined end to end around one of them, which keeps its direction.
struct Chain {
    PolylineShape shape;  ///< without identifiers; a ring has its first vertex again at the end
    bool isRing = false;
    std::vector<ChainLink> links;  ///< all pieces but the middle one, in the order in which they were joined
};

/// The piece that a line, an arc or an open polyline makes; EditError for anything else.
ChainPiece chainPiece(const std::string& name, const Shape& shape);

/// Joins all pieces, first behind the middle one and then before it; EditError for one that touches no open end.
/// Points within a millionth of the pieces' extent are one. Cost: linear in the pieces and their vertices.
Chain chainOf(const std::vector<ChainPiece>& pieces, std::size_t middle);

}  // namespace holdfast::editing
