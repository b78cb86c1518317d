#include "commands/properties/PropertyChange.h"

namespace holdfast::module {

YxGePoint3d PropertyChange::newPoint(const YxGePoint3d& old) const {
    YxGePoint3d whole;
    return takePoint(point, whole) ? whole : withCoordinate(old, coordinate, value);
}

bool takePoint(std::span<const double> values, YxGePoint3d& point) {
    if (values.size() < 3)
        return false;
    point = YxGePoint3d(values[0], values[1], values[2]);
    return true;
}

YxGePoint3d withCoordinate(const YxGePoint3d& base, int coordinate, double value) {
    switch (coordinate) {
        case 0:
            return {value, base.y, base.z};
        case 1:
            return {base.x, value, base.z};
        case 2:
            return {base.x, base.y, value};
        default:
            return YxGePoint3d::kOrigin;
    }
}

PropertiesOriRecord recordOf(const EditableProperty& property) {
    PropertiesOriRecord record;
    record.entType = property.entType;
    record.changeKind = property.changeKind;
    return record;
}

}  // namespace holdfast::module
