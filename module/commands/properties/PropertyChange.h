#pragma once

#include "commands/properties/PropertiesOriRecord.h"
#include "commands/properties/PropertyTable.h"

#include <span>
#include <vector>

#include <yxbase/YxGePoint3d.h>

namespace holdfast::module {

/// One value that the palette reports: a whole point, or one coordinate of a point, or a scalar.
struct PropertyChange {
    int property = 0;
    int coordinate = -1;
    double value = 0.0;
    std::vector<double> point;

    /// Where a point property goes to: the whole point when there is one, else the old point with one coordinate
    /// replaced.
    YxGePoint3d newPoint(const YxGePoint3d& old) const;
};

/// Fills the point with the first three values; false, and the point stays, when there are fewer.
bool takePoint(std::span<const double> values, YxGePoint3d& point);
/// The base with coordinate 0, 1 or 2 replaced; the origin for any other coordinate.
YxGePoint3d withCoordinate(const YxGePoint3d& base, int coordinate, double value);

/// A record that changes nothing yet.
PropertiesOriRecord recordOf(const EditableProperty& property);

}  // namespace holdfast::module
