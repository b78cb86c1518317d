#include "document/Blocks.h"

#include <utility>

namespace holdfast::document {

namespace {

/// A polyline is drawn point by point, a text letter by letter.
double costOf(const Shape& shape) {
    if (const auto* polyline = std::get_if<PolylineShape>(&shape))
        return static_cast<double>(polyline->vertices.size());
    if (const auto* spline = std::get_if<SplineShape>(&shape))
        return static_cast<double>(spline->control.size());
    if (const auto* text = std::get_if<TextShape>(&shape)) {
        constexpr double lettersForALine = 8.0;  // as many bytes in a picture as a line's four numbers
        return 1.0 + static_cast<double>(text->text.size()) / lettersForALine;
    }
    return 1.0;
}

double costOf(const std::vector<BlockPart>& parts) {
    double cost = 0.0;
    for (const BlockPart& part : parts)
        cost += costOf(part.shape);
    return cost;
}

/// A block costs something even when it is empty: looking into it does.
double ownCost(const Block& block) {
    double cost = 1.0 + costOf(block.parts);
    for (const BlockReference& reference : block.references)
        cost += costOf(reference);
    return cost;
}

std::shared_ptr<const Block> sharedOf(Block block) {
    block.cost = ownCost(block);
    return std::make_shared<const Block>(std::move(block));
}

}  // namespace

SharedBlock::SharedBlock(Block block) : m_block(sharedOf(std::move(block))) {}

const Block& SharedBlock::operator*() const {
    static const Block empty;
    return m_block == nullptr ? empty : *m_block;
}

bool operator==(const SharedBlock& a, const SharedBlock& b) {
    return a.m_block == b.m_block || *a == *b;
}

double costOf(const BlockReference& reference) {
    const Placement& placement = reference.placement;
    return static_cast<double>(placement.columns) * placement.rows * reference.block->cost +
           costOf(reference.attributes);
}

std::string_view typeName(BlockReference::Kind kind) {
    switch (kind) {
        case BlockReference::Kind::insert:
            return "insert";
        case BlockReference::Kind::dimension:
            return "dimension";
        case BlockReference::Kind::hatch:
            return "hatch";
    }
    return "";
}

}  // namespace holdfast::document
