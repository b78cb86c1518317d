#pragma once

#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/records/DxfHandles.h"
#include "formats/dxf/records/DxfItems.h"

namespace holdfast::formats {

/// True when a record of this name can hold the shape as it is.
bool canHold(std::string_view recordName, const Shape& shape);

/// Gives a record that can hold it another shape: groups whose number differs get a new one, written as the old one is,
/// and those that the shape needs besides are added. All others stay to the byte. `before` is the shape that was read
/// from the record. Vertices keep what stands beside them (widths) where they keep their place; the fit points of a
/// spline, and the frame of a polyline that was fitted to one, go. Heights above the plane stay.
void rewrite(DxfItems& record, const Shape& before, const Shape& now, DxfHandles& handles);

/// The angle of which degrees are written so that it reads back as this one in radians, where some text does.
double degreesOf(double radians);

}  // namespace holdfast::formats
