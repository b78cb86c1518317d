#include "inference/PointClusters.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <functional>
#include <unordered_map>

namespace holdfast::inference {
namespace {

/// A cell of the grid; doubles, because far points and narrow cells overflow integers.
struct Cell {
    double column, row;
    friend bool operator==(const Cell&, const Cell&) = default;
};

struct CellHash {
    std::size_t operator()(const Cell& cell) const {
        const std::size_t first = std::hash<double>()(cell.column);
        return first ^ (std::hash<double>()(cell.row) + 0x9e3779b97f4a7c15U + (first << 6U) + (first >> 2U));
    }
};

struct Leader {
    Vec2 point;
    std::size_t cluster;
};

using Grid = std::unordered_map<Cell, std::vector<Leader>, CellHash>;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// The first cluster near a point: leaders lie more than the tolerance apart, so a cell holds four at most.
std::size_t clusterNear(const Grid& grid, const Cell& home, Vec2 point, double tolerance) {
    std::size_t nearest = kNone;
    for (const double right : {-1.0, 0.0, 1.0}) {
        for (const double up : {-1.0, 0.0, 1.0}) {
            const auto cell = grid.find(Cell{home.column + right, home.row + up});
            if (cell == grid.end())
                continue;
            for (const Leader& leader : cell->second) {
                if (std::hypot(point.x - leader.point.x, point.y - leader.point.y) <= tolerance)
                    nearest = std::min(nearest, leader.cluster);
            }
        }
    }
    return nearest;
}

}  // namespace

std::vector<std::size_t> clusteredPoints(std::span<const Vec2> points, double tolerance) {
    assert(tolerance > 0.0);
    Grid grid;
    std::vector<std::size_t> clusters;
    std::size_t count = 0;
    clusters.reserve(points.size());
    for (const Vec2 point : points) {
        const Cell home{std::floor(point.x / tolerance), std::floor(point.y / tolerance)};
        std::size_t cluster = clusterNear(grid, home, point, tolerance);
        if (cluster == kNone) {
            cluster = count++;
            grid[home].push_back({point, cluster});
        }
        clusters.push_back(cluster);
    }
    return clusters;
}

}  // namespace holdfast::inference
