#pragma once

#include "commands/properties/PropertyChange.h"

#include <optional>

class YxDbArc;
class YxDbCircle;
class YxDbEllipse;

namespace holdfast::module {

// What a changed property of a circle, arc or ellipse amounts to; nothing for a property that it does not have and for
// a size that it cannot have.
std::optional<PropertiesOriRecord> circleRecord(const YxDbCircle& circle, const PropertyChange& change);
std::optional<PropertiesOriRecord> arcRecord(const YxDbArc& arc, const PropertyChange& change);
std::optional<PropertiesOriRecord> ellipseRecord(const YxDbEllipse& ellipse, const PropertyChange& change);

}  // namespace holdfast::module
