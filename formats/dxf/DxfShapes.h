#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfGroups.h"

namespace holdfast::formats {

/// What became of one entity of a DXF file.
struct DxfReading {
    std::optional<Shape> shape;        ///< nothing when the entity is not understood
    std::string reason;                ///< without a shape: what it is that is not understood
    std::vector<std::string> dropped;  ///< with one: properties that a plane drawing does not hold
};

/// Reads one entity; vertices are those of a POLYLINE. Coordinates on planes that look down (extrusion 0, 0, -1) are
/// turned into those of the drawing. Entities in paper space, on tilted planes or without a size are not understood.
/// Throws DrawingError for groups that are missing, are no numbers or do not count up to what the entity says.
DxfReading readDxfEntity(const DxfEntity& entity, std::span<const DxfEntity> vertices);

/// The text of an attribute; nothing on a tilted plane or without a height. It may be empty. Throws DrawingError as
/// above.
std::optional<TextShape> readDxfAttribute(const DxfEntity& attribute);

}  // namespace holdfast::formats
