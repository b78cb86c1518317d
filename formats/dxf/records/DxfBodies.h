#pragma once

#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfLayout.h"
#include "formats/dxf/records/DxfHandles.h"
#include "formats/dxf/records/DxfItems.h"

namespace holdfast::formats {

/// What stands on every kind of entity: layer, colour, line type and such, with the name of another kind.
struct DxfFrame {
    DxfItems head, tail;   ///< the tail holds what other programs have put on the entity
    double height = 0.0;   ///< above the plane
    DxfItems thickness{};  ///< of kinds that can have one, or empty
};

/// True when the file can have the shape as an entity of its own kind.
bool canWrite(const DxfForm& form, const Shape& shape);

/// A record for a shape that the file can have, in its form: the name, what stands in the frame, the shape's groups.
DxfItems newRecord(const DxfFrame& frame, const Shape& shape, const DxfForm& form, const DxfStyle& style,
                   DxfHandles& handles);

/// The frame of a record, for a record of another kind in its place.
DxfFrame frameOf(const DxfItems& record);

/// The frame of an entity that comes from none of the file's.
DxfFrame newFrame(const Look& look, const DxfForm& form, const DxfStyle& style, DxfHandles& handles);

/// The same record for another entity: with handles of its own, and without what only one entity can own.
DxfItems copied(const DxfItems& record, DxfHandles& handles);

/// Knots, weights and control points.
DxfItems splineData(const SplineShape& spline, double height, const DxfStyle& style);

}  // namespace holdfast::formats
