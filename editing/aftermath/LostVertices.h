#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Tells what is gone of polylines whose segments have other numbers than before an edit, by the points of their
/// vertices. Keeps the points of each polyline that it was asked about: one question takes the logarithm of their
/// number. Entities are told apart by their address and must stay while it is asked.
class LostVertices {
public:
    /// "p.segment:2 was cut away", "the vertex of p at (10, 0) is gone", "p.segment:2 was cut short of its end", "an
    /// end of p.segment:2 moved", by the polylines that are left. Empty when the place is still there; of a whole
    /// segment, when one of its ends is, or both are where its length counts.
    std::string reasonAt(const Place& place, const PolylineShape& was, const std::vector<const PolylineShape*>& left,
                         bool lengthCounts);

private:
    using Point = std::pair<double, double>;
    struct Known {
        std::set<Point> vertices;
        std::set<std::pair<Point, Point>> segments;
    };
    const Known& knownOf(const PolylineShape& polyline);
    bool isLeft(Vec2 vertex, const std::vector<const PolylineShape*>& left);
    bool isLeft(Vec2 start, Vec2 end, const std::vector<const PolylineShape*>& left);

    std::unordered_map<const PolylineShape*, Known> m_known;
};

}  // namespace holdfast::editing
