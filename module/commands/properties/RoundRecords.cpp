#include "commands/properties/RoundRecords.h"

#include "core/CurveEnds.h"

#include <cmath>
#include <numbers>

#include <yxbase/YxGeCircArc3d.h>
#include <yxbase/YxGeEllipArc3d.h>
#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbCircle.h>
#include <yxdb/YxDbEllipse.h>

namespace holdfast::module {

namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

constexpr double kSmallestRatio = 1e-7;  // of an ellipse's minor to its major radius, exclusive

double radiusFrom(Edited edited, double value) {
    switch (edited) {
        case Edited::diameter:
            return value * 0.5;
        case Edited::circumference:
            return value / (2.0 * std::numbers::pi);
        case Edited::area:
            return std::sqrt(value / std::numbers::pi);
        default:
            return value;
    }
}

/// The arc with other end angles. Angles start at x, or at -x when the arc is seen from below.
YxGeCircArc3d withAngles(const YxDbArc& arc, double startAngle, double endAngle) {
    const bool fromBelow = arc.normal().dotProduct(YxGeVector3d::kZAxis) < 0.0;
    const YxGeVector3d reference = fromBelow ? -YxGeVector3d::kXAxis : YxGeVector3d::kXAxis;
    return {arc.center(), arc.normal(), reference, arc.radius(), startAngle, endAngle};
}

YxGeEllipArc3d withAngles(const YxDbEllipse& ellipse, double startAngle, double endAngle) {
    const YxGeVector3d major = ellipse.majorAxis();
    const YxGeVector3d minor = ellipse.minorAxis();
    return {ellipse.center(), major, minor, major.length(), minor.length(), startAngle, endAngle};
}

/// False when the ellipse cannot have the size.
bool setSize(PropertiesOriRecord& record, const YxDbEllipse& ellipse, Edited edited, double value) {
    const double majorRadius = ellipse.majorAxis().length();
    switch (edited) {
        case Edited::majorRadius:
            record.value1 = value;
            return value > 0.0 && value >= ellipse.radiusRatio() * majorRadius;
        case Edited::minorRadius:
            record.value2 = value;
            return value > 0.0 && value <= majorRadius;
        default:
            record.value2 = value * majorRadius;
            return value > kSmallestRatio && value < 1.0;
    }
}

}  // namespace

std::optional<PropertiesOriRecord> circleRecord(const YxDbCircle& circle, const PropertyChange& change) {
    const EditableProperty* property = findProperty(EntType::kCircle, change.property);
    if (property == nullptr)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*property);
    if (property->edited == Edited::position) {
        record.delta = change.newPoint(circle.center()) - circle.center();
        return record;
    }
    if (!(change.value > 0.0))
        return std::nullopt;
    record.value1 = radiusFrom(property->edited, change.value);
    return record;
}

std::optional<PropertiesOriRecord> arcRecord(const YxDbArc& arc, const PropertyChange& change) {
    const EditableProperty* property = findProperty(EntType::kArc, change.property);
    if (property == nullptr)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*property);
    switch (property->edited) {
        case Edited::position:
            record.delta = change.newPoint(arc.center()) - arc.center();
            return record;
        case Edited::startAngle:
            record.delta = withAngles(arc, change.value, arc.endAngle()).startPoint() - endPoints(arc).start;
            return record;
        case Edited::endAngle:
            record.delta = withAngles(arc, arc.startAngle(), change.value).endPoint() - endPoints(arc).end;
            return record;
        default:
            record.value1 = change.value;
            return change.value > 0.0 ? std::optional(record) : std::nullopt;
    }
}

std::optional<PropertiesOriRecord> ellipseRecord(const YxDbEllipse& ellipse, const PropertyChange& change) {
    const EditableProperty* property = findProperty(EntType::kEllipse, change.property);
    if (property == nullptr)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*property);
    switch (property->edited) {
        case Edited::position:
            record.delta = change.newPoint(ellipse.center()) - ellipse.center();
            return record;
        case Edited::startAngle:
            record.delta =
                withAngles(ellipse, change.value, ellipse.endAngle()).startPoint() - endPoints(ellipse).start;
            return record;
        case Edited::endAngle:
            record.delta = withAngles(ellipse, ellipse.startAngle(), change.value).endPoint() - endPoints(ellipse).end;
            return record;
        default:
            return setSize(record, ellipse, property->edited, change.value) ? std::optional(record) : std::nullopt;
    }
}

}  // namespace holdfast::module
