#pragma once

#include <map>
#include <optional>
#include <string>

#include "formats/Uses.h"
#include "formats/dxf/DxfGroups.h"
#include "formats/dxf/DxfLayout.h"
#include "geometry/Vec2.h"

namespace holdfast::formats {

/// A DIMENSION or ARC_DIMENSION as it stands in a file: what it measures, and between which points of the drawing.
struct DxfDimension {
    /// By their numbers in the file, behind which stand those with records of their own.
    enum class Kind { turned, aligned, twoLines, diameter, radius, threePoints, ordinate, other, arc };

    Kind kind = Kind::other;
    std::map<int, Vec2> points{};  ///< by the codes of their x
    double direction = 0.0;        ///< in which a turned one measures, in radians
    bool isAlongX = false;         ///< of one coordinate: x, and else y
    double frame = 0.0;            ///< how far the axes of that are turned, in radians
    DxfRange range{};
    std::string fault{};  ///< why it is not drawn, or empty

    /// A point that it has; the origin for one that it says nothing of.
    Vec2 at(int code) const {
        const auto found = points.find(code);
        return found == points.end() ? Vec2{} : found->second;
    }
};

/// Nothing for other records, in paper space, on a tilted plane and with groups that are faulty.
std::optional<DxfDimension> readDxfDimension(const DxfEntity& entity);

}  // namespace holdfast::formats
