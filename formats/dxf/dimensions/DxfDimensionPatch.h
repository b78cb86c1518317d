#pragma once

#include <optional>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfLayout.h"
#include "formats/dxf/records/DxfItems.h"

namespace holdfast::formats {

/// A drawing, and the same constraint in it.
struct DxfMeasuredIn {
    const EntityIndex& entities;
    const Constraint& constraint;
};

/// True where something that the dimension stands on is elsewhere now.
bool hasMoved(const DxfMeasure& measure, const DxfMeasuredIn& before, const DxfMeasuredIn& now);

/// Gives the record of a dimension the points that it is measured between now, and its number. Its line, its text and
/// its picture stay where they are. False, and nothing is changed, where something that it stood on is gone.
bool rewriteDimension(DxfItems& record, const DxfMeasure& measure, const DxfMeasuredIn& before,
                      const DxfMeasuredIn& now);

}  // namespace holdfast::formats
