#include "commands/properties/VertexRecords.h"

#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbSpline.h>

namespace holdfast::module {

namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

constexpr double kControlPointMark = 1.0;  // tells the evaluator that the change kind is a control point's number

}  // namespace

std::optional<PropertiesOriRecord> polylineRecord(const YxDbPolyline& polyline, int property, int vertex,
                                                  const YxGePoint3d& newVertex) {
    const EditableProperty* edited = findProperty(EntType::kPolyline, property);
    if (edited == nullptr || vertex < 0 || static_cast<unsigned int>(vertex) >= polyline.numVerts())
        return std::nullopt;
    YxGePoint2d old;
    if (polyline.getPointAt(static_cast<unsigned int>(vertex), old) != Yxrt::eOk)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*edited);
    record.changeKind = vertex;
    record.delta = newVertex - YxGePoint3d(old.x, old.y, 0.0);
    return record;
}

std::optional<PropertiesOriRecord> splineRecord(const YxDbSpline& spline, int property, int controlPoint,
                                                const YxGePoint3d& newPoint) {
    const EditableProperty* edited = findProperty(EntType::kSpline, property);
    if (edited == nullptr)
        return std::nullopt;
    YxGePoint3d old;
    // KEEP: a control point that cannot be read counts as the origin
    // (PropertiesSpline.MeasuresAnUnreadableControlPointFromTheOrigin).
    spline.getControlPointAt(controlPoint, old);
    PropertiesOriRecord record = recordOf(*edited);
    record.changeKind = controlPoint;
    record.delta = newPoint - old;
    record.value1 = kControlPointMark;
    return record;
}

}  // namespace holdfast::module
