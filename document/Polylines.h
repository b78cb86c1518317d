#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// A polyline and the entities that became its segments, in its order.
struct PolylineChain {
    std::string polyline;
    std::vector<std::string> entities;

    friend bool operator==(const PolylineChain&, const PolylineChain&) = default;
};

struct PolylineConversion {
    Document document;
    std::vector<PolylineChain> chains;
    std::vector<std::string> dropped;  ///< ids of the coincidences that a shared vertex says already
};

/// Turns chains and loops of lines and arcs that are joined end to end by coincidences into polylines named p0, p1,
/// ..., each in the place of its first entity and in the direction of that. Constraints keep their ids and mean the
/// same, with places on segments; a coincidence between two neighbours goes, because they share a vertex.
///
/// A joint is a point where coincidences of top level bring exactly two ends of lines and arcs together that lie within
/// the tolerance; where three meet, the chains end. Fixed entities, helpers of ellipses and full circles stay as they
/// are, and helper geometry is not mixed with what is cut. Vertex identifiers are 0. The vertices are the start points
/// of the segments, so geometry moves by the tolerance at most. Cost: linear in the document. The result passes
/// checkDocument if the document does.
PolylineConversion chainsToPolylines(const Document& document, double tolerance = 1e-6);

}  // namespace holdfast::document
