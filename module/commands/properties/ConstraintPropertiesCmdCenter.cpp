#include "commands/properties/ConstraintPropertiesCmdCenter.h"

#include "commands/properties/PropertyChange.h"
#include "core/OnceList.h"
#include "core/OpenAs.h"
#include "evaluation/EvaluationHeader.h"

#include <utility>

#include <BondKit/YxConstraintModelHelp.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbSpline.h>

using namespace holdfast::module;

namespace {

constexpr double kPlaneTolerance = 1e-10;  // drawing units, inclusive; the module's only threshold of its own
constexpr int kAccepted = 1;
constexpr int kRefused = -1;

/// Not a number is off the plane.
bool liesInPlane(double z) {
    return z >= -kPlaneTolerance && z <= kPlaneTolerance;
}

/// The palette's vertex list has four rows for each vertex, the first of them for the coordinates.
struct VertexRow {
    explicit VertexRow(int row) : vertex(row / 4), coordinate(row % 4) {}
    int vertex;
    int coordinate;
};

void setCoordinate(YxGePoint3d& point, int coordinate, double value) {
    if (coordinate >= 0 && coordinate <= 2)
        point = withCoordinate(point, coordinate, value);
}

bool isConstrainedVertex(const YxDbObjectId& polyline, int vertex) {
    YxArray<int> vertexNumbers;  // counted from 1
    return LvEvaDataConverter::polyLineHasAssocConstraintIndex(polyline, vertexNumbers) &&
           vertexNumbers.contains(vertex + 1);
}

}  // namespace

ConstraintPropertiesCmdCenter::ConstraintPropertiesCmdCenter() = default;
ConstraintPropertiesCmdCenter::~ConstraintPropertiesCmdCenter() = default;

bool ConstraintPropertiesCmdCenter::addOriInfo(const YxDbObjectId& id, int property, std::vector<double> point) {
    const auto entity = openAs<YxDbEntity>(id);
    if (!entity || !LvEvaDataConverter::hasAssocConstraint(id) || point.size() < 3)
        return false;
    if (!liesInPlane(point[2])) {
        deleteConstraintsOf(id);
        return false;
    }
    return recordPoint(*entity, id, {.property = property, .coordinate = -1, .value = 0.0, .point = std::move(point)});
}

bool ConstraintPropertiesCmdCenter::addOriInfo(const YxDbObjectId& id, int property, int coordinate, double value) {
    const auto entity = openAs<YxDbEntity>(id);
    if (!entity || !LvEvaDataConverter::hasAssocConstraint(id))
        return false;
    // KEEP: a scalar is taken for a height as well (PropertiesScalar.DeletesTheConstraintsWhenReportedAsZ).
    if (coordinate == 2 && !liesInPlane(value)) {
        deleteConstraintsOf(id);
        return false;
    }
    return recordValue(*entity, id, {.property = property, .coordinate = coordinate, .value = value, .point = {}});
}

int ConstraintPropertiesCmdCenter::addExpanderOriInfo(const YxDbObjectId& id, int /*ignored*/, int property, int row,
                                                      double value) {
    if (!LvEvaDataConverter::hasAssocConstraint(id) || (property != 1 && property != 2))
        return kRefused;
    if (const auto polyline = openAs<YxDbPolyline>(id))
        return addPolylineRow(*polyline, id, property, row, value);
    if (const auto spline = openAs<YxDbSpline>(id))
        return addSplineRow(*spline, id, property, row, value);
    return kRefused;
}

int ConstraintPropertiesCmdCenter::addPolylineRow(const YxDbPolyline& polyline, const YxDbObjectId& id, int property,
                                                  int row, double value) {
    const auto [vertex, coordinate] = VertexRow(row);
    if (!isConstrainedVertex(id, vertex) || coordinate > 1)
        return kRefused;
    setCoordinate(expanderPoint, coordinate, value);
    if (expanderCount == 0) {
        expanderCount = 1;
        return kAccepted;
    }
    const bool recorded = addOriPolylineInfo(&polyline, id, property, vertex, expanderPoint);
    resetExpander();
    return recorded ? kAccepted : kRefused;
}

int ConstraintPropertiesCmdCenter::addSplineRow(const YxDbSpline& spline, const YxDbObjectId& id, int property, int row,
                                                double value) {
    const auto [vertex, coordinate] = VertexRow(row);
    if (coordinate > 2)
        return kRefused;
    setCoordinate(expanderPoint, coordinate, value);
    if (expanderCount < 2) {
        ++expanderCount;
        return kAccepted;
    }
    if (!liesInPlane(expanderPoint.z)) {
        // KEEP: the pending point stays (PropertiesExpander.KeepsThePendingPointAfterADeletion).
        deleteConstraintsOf(id);
        return kRefused;
    }
    const bool recorded = addOriSplineInfo(&spline, id, property, vertex, expanderPoint);
    resetExpander();
    return recorded ? kAccepted : kRefused;
}

void ConstraintPropertiesCmdCenter::resetExpander() {
    expanderCount = 0;
    expanderPoint = YxGePoint3d::kOrigin;
}

void ConstraintPropertiesCmdCenter::deleteConstraintsOf(const YxDbObjectId& id) {
    YxArray<YxDbObjectId> ids;
    ids.append(id);
    delConsCount = YxConstraintModelHelp().deleteConstraints(ids);
}

int ConstraintPropertiesCmdCenter::getWithResetDelConsCounts() {
    return std::exchange(delConsCount, 0);
}

bool ConstraintPropertiesCmdCenter::oriArrConvertPoint(std::vector<double> values, YxGePoint3d& point) const {
    return takePoint(values, point);
}

YxGePoint3d ConstraintPropertiesCmdCenter::oriVarConConvertPoint(double value, int coordinate,
                                                                 const YxGePoint3d& base) const {
    return withCoordinate(base, coordinate, value);
}

void ConstraintPropertiesCmdCenter::addDataToWork() {
    if (oriInfos.empty() || oriInfos.begin()->first.isNull())
        return;
    const auto [group, header] = findHeaderOf(oriInfos.begin()->first);
    if (header == nullptr || !ensureConverter(*header, kPropertiesEditor))
        return;
    header->editedObjectIds.setLogicalLength(0);
    setEditKind(*header, EditKind::properties);
    header->preEditEntities.clear();
    for (const auto& [id, record] : oriInfos)
        handOver(*header, id, record);
    markChanged(group);
}

void ConstraintPropertiesCmdCenter::handOver(AssocConstraintHeader& header, const YxDbObjectId& id,
                                             const PropertiesOriRecord& record) {
    if (record.preEditCopy == nullptr || !LvEvaDataConverter::hasAssocConstraint(id))
        return;
    appendGrowing(header.editedObjectIds, id);
    header.preEditEntities[id] = record.preEditCopy;
    m_copies.handOver(record.preEditCopy, header);
    // A converter that was made for another command takes no record.
    if (auto* converter = dynamic_cast<LvEvaDataConverterPropertiesEdit*>(header.converter))
        converter->collectAndUpdateInfo(id, record.entType, record.changeKind, record.delta, record.value1,
                                        record.value2, record.transform);
}
