#include "formats/dxf/dimensions/DxfDimension.h"

#include <cmath>
#include <string_view>

#include "document/text/DrawingError.h"
#include "formats/dxf/DxfPlane.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

/// Points that a dimension measures from stand in the coordinates of the world, and where its arc runs in its own.
constexpr int kWorldPoints[] = {10, 13, 14, 15};
constexpr int kArcPoint = 16;

constexpr std::string_view kArcRecord = "ARC_DIMENSION";

DxfDimension::Kind kindIn(int flags) {
    constexpr int kindBits = 7, kinds = static_cast<int>(DxfDimension::Kind::other);
    const int kind = flags & kindBits;
    return kind < kinds ? static_cast<DxfDimension::Kind>(kind) : DxfDimension::Kind::other;
}

DxfDimension read(const DxfEntity& entity) {
    constexpr int alongX = 64;
    const int flags = entity.integer(70, 0);
    DxfDimension dimension{.kind = entity.name == kArcRecord ? DxfDimension::Kind::arc : kindIn(flags),
                           .isAlongX = (flags & alongX) != 0,
                           .frame = inRadians(entity.number(51, 0.0)),
                           .range = {entity.begin, entity.end}};
    for (const int code : kWorldPoints)
        if (entity.find(code) != nullptr)
            dimension.points[code] = {entity.number(code, 0.0), entity.number(code + 10, 0.0)};
    const Facing facing = facingOf(entity);
    if (entity.find(kArcPoint) != nullptr)
        dimension.points[kArcPoint] =
            turned({entity.number(kArcPoint, 0.0), entity.number(kArcPoint + 10, 0.0)}, facing);
    const double direction = inRadians(entity.number(50, 0.0));
    dimension.direction = facing == Facing::down ? kPi - direction : direction;
    return dimension;
}

}  // namespace

std::optional<DxfDimension> readDxfDimension(const DxfEntity& entity) {
    if (entity.name != "DIMENSION" && entity.name != kArcRecord)
        return std::nullopt;
    try {
        if (entity.integer(67, 0) == 1 || facingOf(entity) == Facing::sideways)
            return std::nullopt;
        return read(entity);
    } catch (const DrawingError&) {
        return std::nullopt;
    }
}

}  // namespace holdfast::formats
