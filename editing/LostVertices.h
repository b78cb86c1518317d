#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <utility>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Tells what is gone of polylines whose segments have other numbers than before an edit, by the points of their
/// vertices. Keeps the points of each polyline that it was asked about: one question takes the logarithm of their
/// number. Entities are told apart by their address and must stay while it is asked.
class LostVertices {
public:
    /// "p.segment:2 was cut away", "the vertex of p at (10, 0) is gone", "an end of p.segment:2 moved"; empty when both
    /// vertices of the segment are still there.
    std::string reasonAt(const Place& place, const PolylineShape& was, const PolylineShape& is);

private:
    using Points = std::set<std::pair<double, double>>;
    const Points& pointsOf(const PolylineShape& polyline);

    std::unordered_map<const PolylineShape*, Points> m_points;
};

}  // namespace holdfast::editing
