#pragma once

#include "commands/properties/PropertyChange.h"

#include <optional>

class YxDbLine;
class YxDbObjectId;
class YxDbRay;
class YxDbXline;

namespace holdfast::module {

/// True when a line, ray or construction line carries a fixed constraint on its edge.
bool isFixedLine(const YxDbObjectId& id);

// What a changed property of a line, ray or construction line amounts to; nothing for a property that it does not have.
// A fixed one only slides along itself: a point off it is recorded as no change at all.
std::optional<PropertiesOriRecord> lineRecord(const YxDbLine& line, const PropertyChange& change, bool isFixed);
std::optional<PropertiesOriRecord> rayRecord(const YxDbRay& ray, const PropertyChange& change, bool isFixed);
std::optional<PropertiesOriRecord> xlineRecord(const YxDbXline& xline, const PropertyChange& change, bool isFixed);

}  // namespace holdfast::module
