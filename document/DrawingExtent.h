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
        m_blocks.resize((count + kBlock - 1) / kBlock);
        Box all;
        for (std::size_t b = 0; b < m_blocks.size(); ++b) {
            if (m_blocks[b].isStale) {
                m_blocks[b] = {.box = {}, .isStale = false};
                for (std::size_t i = b * kBlock; i < std::min(count, (b + 1) * kBlock); ++i)
                    if (const Shape* shape = shapeOf(i))
                        include(m_blocks[b].box, *shape);
            }
            all.add(m_blocks[b].box);
        }
        const double diagonal = all.diagonal();
        return diagonal > 0.0 && std::isfinite(diagonal) ? diagonal : 1.0;
    }

private:
    static constexpr std::size_t kBlock = 256;  // about the square root of a large drawing
    struct Block {
        Box box;
        bool isStale = true;
    };
    static void include(Box& box, const Shape& shape);

    std::vector<Block> m_blocks;
};

}  // namespace holdfast::document
