#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "document/Look.h"
#include "document/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::document {

struct Block;

/// A block that references share. Never changed, only replaced.
class SharedBlock {
public:
    SharedBlock() = default;
    explicit SharedBlock(Block block);

    const Block& operator*() const;
    const Block* operator->() const { return &**this; }

    friend bool operator==(const SharedBlock& a, const SharedBlock& b);

private:
    std::shared_ptr<const Block> m_block;  // null: an empty one
};

/// One entity of a block, in the coordinates of that.
struct BlockPart {
    Shape shape;
    SharedLook look{};

    friend bool operator==(const BlockPart&, const BlockPart&) = default;
};

/// Where a reference shows its block: scaled along the block's axes, then turned, then shifted; in columns and rows,
/// which stand along the turned axes.
struct Placement {
    Vec2 at{};                          ///< where the block's base point comes to, in column 0 and row 0
    double rotation = 0.0;              ///< counter-clockwise, in radians
    double xScale = 1.0, yScale = 1.0;  ///< not 0; below 0 it is mirrored
    int columns = 1, rows = 1;
    Vec2 spacing{};  ///< from column to column and from row to row

    friend bool operator==(const Placement&, const Placement&) = default;
};

/// Something that is drawn, and edited as a whole or not at all: its parts are no entities.
struct BlockReference {
    enum class Kind { insert, dimension, hatch };

    std::string id;  ///< "insert:3"; in a block counted from 0 there
    Kind kind = Kind::insert;
    Placement placement{};
    SharedLook look{};
    SharedBlock block{};
    std::vector<BlockPart> attributes{};  ///< texts of its own, where the drawing has them
    std::string measure{};                ///< of a dimension: the constraint that measures the same, or empty

    friend bool operator==(const BlockReference&, const BlockReference&) = default;
};

/// What references show.
struct Block {
    std::string name{};
    Vec2 base{};
    std::vector<BlockPart> parts{};
    std::vector<BlockReference> references{};
    double cost = 1.0;  ///< how much one reference in one place shows: parts, and the points of those that have many

    friend bool operator==(const Block&, const Block&) = default;
};

/// How much a reference shows, all columns and rows and what stands in the block by reference. Beyond all numbers for
/// what nobody can draw.
double costOf(const BlockReference& reference);

/// The most that the references of one drawing show together: what is drawn within a second.
inline constexpr double kMostShown = 100'000.0;

/// "insert", "dimension", "hatch".
std::string_view typeName(BlockReference::Kind kind);

}  // namespace holdfast::document
