#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"

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
        m_blocks.resize((count + kBlock - 1) / kBlock);
        Block all;
        for (std::size_t b = 0; b < m_blocks.size(); ++b) {
            if (m_blocks[b].isStale) {
                m_blocks[b] = {.isStale = false};
                for (std::size_t i = b * kBlock; i < std::min(count, (b + 1) * kBlock); ++i)
                    if (const Shape* shape = shapeOf(i))
                        include(m_blocks[b], *shape);
            }
            join(all, m_blocks[b]);
        }
        return diagonalOf(all);
    }

private:
    static constexpr std::size_t kBlock = 256;  // about the square root of a large drawing
    static constexpr double kFar = 1.7e308;
    struct Block {
        double lowX = kFar, lowY = kFar, highX = -kFar, highY = -kFar;
        bool isStale = true;
    };
    static void include(Block& block, const Shape& shape);
    static void join(Block& block, const Block& other);
    static double diagonalOf(const Block& block);

    std::vector<Block> m_blocks;
};

}  // namespace holdfast::document
