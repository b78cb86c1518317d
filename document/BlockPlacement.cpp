#include "document/BlockPlacement.h"

#include <cmath>

#include "geometry/Vec2.h"

namespace holdfast::document {

namespace {

/// Scale, turn and shift of a reference, its block's base point left aside.
Affine plainTransformOf(const Placement& placement, int column, int row) {
    const PlaneTransform turn = rotation({}, placement.rotation);
    const Vec2 step{column * placement.spacing.x, row * placement.spacing.y};
    return {placement.xScale * turn.xAxis, placement.yScale * turn.yAxis, placement.at + turn.vectorAfter(step)};
}

}  // namespace

Affine transformOf(const BlockReference& reference, int column, int row) {
    Affine transform = plainTransformOf(reference.placement, column, row);
    transform.offset = transform.pointAfter(-reference.block->base);
    return transform;
}

BlockReference transformed(BlockReference reference, const PlaneTransform& transform) {
    Placement& placement = reference.placement;
    placement.at = transform.pointAfter(placement.at);
    placement.rotation = transform.angleAfter(placement.rotation);
    // A reflection at the x axis comes before the turn: the y axis goes the other way.
    const double across = transform.mirrors ? -transform.scale : transform.scale;
    placement.xScale *= transform.scale;
    placement.yScale *= across;
    placement.spacing = {placement.spacing.x * transform.scale, placement.spacing.y * across};
    for (BlockPart& part : reference.attributes)
        part.shape = transformed(part.shape, transform);
    return reference;
}

std::optional<BlockReference> transformed(const BlockReference& inner, const Affine& outer) {
    const Affine whole = chained(outer, plainTransformOf(inner.placement, 0, 0));
    const PlaneTransform turn = rotation({}, inner.placement.rotation);
    const Vec2 columnStep = outer.vectorAfter(inner.placement.spacing.x * turn.xAxis);
    const Vec2 rowStep = outer.vectorAfter(inner.placement.spacing.y * turn.yAxis);
    const Vec2 along = unit(whole.xAxis);
    constexpr double slanted = 1e-9;  // of the lengths that lie across each other: what no picture shows
    const auto isAlong = [&](Vec2 vector, Vec2 axis) {
        return std::abs(cross(vector, axis)) <= slanted * norm(vector);
    };
    if (!isAlong(whole.yAxis, leftOf(along)) || !isAlong(columnStep, along) || !isAlong(rowStep, leftOf(along)))
        return std::nullopt;
    BlockReference placed = inner;
    placed.placement.at = whole.offset;
    placed.placement.rotation = std::atan2(along.y, along.x);
    placed.placement.xScale = norm(whole.xAxis);
    placed.placement.yScale = dot(whole.yAxis, leftOf(along));
    placed.placement.spacing = {dot(columnStep, along), dot(rowStep, leftOf(along))};
    for (BlockPart& part : placed.attributes)
        part.shape = transformed(part.shape, outer);
    return placed;
}

}  // namespace holdfast::document
