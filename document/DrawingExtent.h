#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"
#include "geometry/Box.h"

namespace holdfast::document {

/// The box around entities that come, go and change, each under a number of its own.
///
/// Boxes are kept for blocks of numbers: a change costs one block, the question for the whole one look at each block.
class DrawingExtent {
public:
    /// Something under this number has changed.
    void touch(std::size_t number);

    /// Length of the diagonal of the box; 1 when nothing has an extent. Unbounded lines count with their base point,
    /// arcs with their ends. shapeOf answers the shape under a number, null for one that is gone.
    template <class ShapeOf>
    double diagonal(std::size_t count, const ShapeOf& shapeOf) {
        renew(count, shapeOf);
        Box all;
        for (const Block& block : m_blocks)
            all.add(block.box);
        const double diagonal = all.diagonal();
        return diagonal > 0.0 && std::isfinite(diagonal) ? diagonal : 1.0;
    }

    /// Calls take(number), ascending, for all shapes of which a defining point may lie in the window: an end, a vertex,
    /// a control point, a centre, a point within one unit of the base point of an unbounded line. Cost: one look at
    /// each block, and one at each shape of the blocks that reach into the window.
    template <class ShapeOf, class Take>
    void forThoseNear(const Box& window, std::size_t count, const ShapeOf& shapeOf, const Take& take) {
        renew(count, shapeOf);
        for (std::size_t b = 0; b < m_blocks.size(); ++b)
            if (m_blocks[b].points.meets(window))
                forBlock(b, count, shapeOf, [&](std::size_t number, const Shape& shape) {
                    if (pointsOf(shape).meets(window))
                        take(number);
                });
    }

private:
    static constexpr std::size_t kBlock = 256;  // about the square root of a large drawing
    struct Block {
        Box box, points;
        bool isStale = true;
    };
    static void include(Box& box, const Shape& shape);
    static Box pointsOf(const Shape& shape);

    template <class ShapeOf, class Take>
    static void forBlock(std::size_t block, std::size_t count, const ShapeOf& shapeOf, const Take& take) {
        for (std::size_t i = block * kBlock; i < std::min(count, (block + 1) * kBlock); ++i)
            if (const Shape* shape = shapeOf(i))
                take(i, *shape);
    }

    template <class ShapeOf>
    void renew(std::size_t count, const ShapeOf& shapeOf) {
        m_blocks.resize((count + kBlock - 1) / kBlock);
        for (std::size_t b = 0; b < m_blocks.size(); ++b)
            if (Block& block = m_blocks[b]; block.isStale) {
                block = {.box = {}, .points = {}, .isStale = false};
                forBlock(b, count, shapeOf, [&](std::size_t, const Shape& shape) {
                    include(block.box, shape);
                    block.points.add(pointsOf(shape));
                });
            }
    }

    std::vector<Block> m_blocks;
};

}  // namespace holdfast::document
