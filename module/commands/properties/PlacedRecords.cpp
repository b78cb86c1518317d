#include "commands/properties/PlacedRecords.h"

#include <BondKit/YxConstraintModelHelp.h>
#include <yxdb/YxDbMText.h>
#include <yxdb/YxDbPoint.h>
#include <yxdb/YxDbText.h>

namespace holdfast::module {

namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

constexpr unsigned int kDirectionGeometry = 6;  // the host's number for a text's direction line

/// How a text lies in the drawing; the rotation in radians about the normal.
struct Placement {
    YxGePoint3d position;
    YxGeVector3d normal;
    double rotation = 0.0;
};

YxGeMatrix3d turnTo(const Placement& placement, double rotation) {
    const double angle = rotation - placement.rotation;
    YxGeMatrix3d turn;
    turn.setToRotation(placement.normal.z < 0.0 ? -angle : angle, placement.normal, placement.position);
    return turn;
}

std::optional<PropertiesOriRecord> placedRecord(EntType entType, const YxDbEntity& text, const Placement& placement,
                                                const PropertyChange& change) {
    const EditableProperty* property = findProperty(entType, change.property);
    if (property == nullptr)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*property);
    if (property->edited == Edited::position) {
        record.delta = change.newPoint(placement.position) - placement.position;
        return record;
    }
    if (!YxConstraintModelHelp().checkEntHasGeomType(&text, kDirectionGeometry))
        return std::nullopt;
    record.transform = turnTo(placement, change.value);
    return record;
}

}  // namespace

std::optional<PropertiesOriRecord> pointRecord(const YxDbPoint& point, const PropertyChange& change) {
    return placedRecord(EntType::kPoint, point, {.position = point.position(), .normal = {}, .rotation = 0.0}, change);
}

std::optional<PropertiesOriRecord> textRecord(const YxDbText& text, const PropertyChange& change) {
    return placedRecord(EntType::kText, text, {text.position(), text.normal(), text.rotation()}, change);
}

std::optional<PropertiesOriRecord> mtextRecord(const YxDbMText& text, const PropertyChange& change) {
    return placedRecord(EntType::kMText, text, {text.location(), text.normal(), text.rotation()}, change);
}

}  // namespace holdfast::module
