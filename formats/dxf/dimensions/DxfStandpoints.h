#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// A place of an entity at which something may stand.
struct DxfStandpoint {
    std::size_t entity = 0;  ///< its number in the drawing
    Place place{};
    Vec2 point{};
};

/// The ends, middles, centres and control points of a drawing's entities that lie near some given points.
///
/// Cost: one look at each place of the drawing; where very many places lie on one spot, only the first are kept, so
/// that asking takes constant time whatever the file holds.
class DxfStandpoints {
public:
    /// Near is what is not farther than `tolerance`, which is above 0.
    DxfStandpoints(const std::vector<Entity>& entities, const std::vector<Vec2>& wanted, double tolerance);

    /// Those near one of the wanted points: ends before centres before middles, then in the order of the drawing.
    std::vector<DxfStandpoint> near(Vec2 point) const;

private:
    using Cell = std::pair<double, double>;
    Cell cellOf(Vec2 point) const;
    void add(std::size_t entity, const Entity& of, PlaceKind kind, int index = 0);
    void addPlaces(std::size_t entity, const Entity& of);

    double m_tolerance;
    std::map<Cell, std::vector<DxfStandpoint>> m_cells;  // those that a wanted point may look into
};

}  // namespace holdfast::formats
