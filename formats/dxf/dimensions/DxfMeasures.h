#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfLayout.h"
#include "formats/dxf/dimensions/DxfDimension.h"

namespace holdfast::formats {

/// What a dimension of a file says of the drawing's entities.
struct DxfFollowing {
    std::optional<Constraint> constraint{};  ///< measured, with the value that the drawing has, without its name
    std::vector<DxfAnchor> anchors{};
    std::string reason{};  ///< without a constraint: why it is not followed
};

/// Says of each dimension what it measures, in their order. It is followed where its points stand on ends, middles,
/// centres or control points, within a millionth of the drawing's size: those of other programs carry six digits. A
/// length is that between two places, along an axis, or from a place to a line at right angles; a radius or diameter
/// that of the circle or arc whose centre it names; an angle that of two lines, each with an end where the dimension
/// has a point.
std::vector<DxfFollowing> followedDimensions(const std::vector<Entity>& entities,
                                             const std::vector<DxfDimension>& dimensions);

}  // namespace holdfast::formats
