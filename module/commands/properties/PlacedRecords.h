#pragma once

#include "commands/properties/PropertyChange.h"

#include <optional>

class YxDbMText;
class YxDbPoint;
class YxDbText;

namespace holdfast::module {

// What a changed property of a point or a text amounts to; nothing for a property that it does not have and for the
// rotation of a text whose direction is not constrained.
std::optional<PropertiesOriRecord> pointRecord(const YxDbPoint& point, const PropertyChange& change);
std::optional<PropertiesOriRecord> textRecord(const YxDbText& text, const PropertyChange& change);
std::optional<PropertiesOriRecord> mtextRecord(const YxDbMText& text, const PropertyChange& change);

}  // namespace holdfast::module
