// One recorder for each type of entity, and the orders in which an entity finds its own.

#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "commands/properties/LineRecords.h"
#include "commands/properties/PlacedRecords.h"
#include "commands/properties/RoundRecords.h"
#include "commands/properties/VertexRecords.h"
#include "evaluation/EntityOpening.h"

#include <span>
#include <utility>

#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbCircle.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbMText.h>
#include <yxdb/YxDbPoint.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>
#include <yxdb/YxDbText.h>
#include <yxdb/YxDbXline.h>

using namespace holdfast::module;

namespace {

using Centre = ConstraintPropertiesCmdCenter;

struct Recorder {
    YxRxClass* (*desc)();
    bool (*record)(Centre& centre, const YxDbEntity& entity, const YxDbObjectId& id, const PropertyChange& change);
};

/// A recorder of the centre behind one signature for all types.
template <class Entity, auto operation>
bool recordAs(Centre& centre, const YxDbEntity& entity, const YxDbObjectId& id, const PropertyChange& change) {
    return (centre.*operation)(static_cast<const Entity*>(&entity), id, change.property, change.coordinate,
                               change.value, change.point);
}

/// The first class that the entity is of wins.
bool recordWith(std::span<const Recorder> recorders, Centre& centre, const YxDbEntity& entity, const YxDbObjectId& id,
                const PropertyChange& change) {
    for (const Recorder& recorder : recorders)
        if (entity.isKindOf(recorder.desc()))
            return recorder.record(centre, entity, id, change);
    return false;
}

}  // namespace

bool ConstraintPropertiesCmdCenter::recordPoint(const YxDbEntity& entity, const YxDbObjectId& id,
                                                const PropertyChange& change) {
    static constexpr Recorder kOrder[] = {
        {&YxDbLine::desc, &recordAs<YxDbLine, &Centre::addOriLineInfo>},
        {&YxDbXline::desc, &recordAs<YxDbXline, &Centre::addOriXlineInfo>},
        {&YxDbRay::desc, &recordAs<YxDbRay, &Centre::addOriRayInfo>},
        {&YxDbCircle::desc, &recordAs<YxDbCircle, &Centre::addOriCircleInfo>},
        {&YxDbArc::desc, &recordAs<YxDbArc, &Centre::addOriArcInfo>},
        {&YxDbEllipse::desc, &recordAs<YxDbEllipse, &Centre::addOriEllipseInfo>},
        {&YxDbPoint::desc, &recordAs<YxDbPoint, &Centre::addOriPointInfo>},
        {&YxDbText::desc, &recordAs<YxDbText, &Centre::addOriTextInfo>},
        {&YxDbMText::desc, &recordAs<YxDbMText, &Centre::addOriMTextInfo>},
    };
    return recordWith(kOrder, *this, entity, id, change);
}

bool ConstraintPropertiesCmdCenter::recordValue(const YxDbEntity& entity, const YxDbObjectId& id,
                                                const PropertyChange& change) {
    static constexpr Recorder kOrder[] = {
        {&YxDbLine::desc, &recordAs<YxDbLine, &Centre::addOriLineInfo>},
        {&YxDbRay::desc, &recordAs<YxDbRay, &Centre::addOriRayInfo>},
        {&YxDbXline::desc, &recordAs<YxDbXline, &Centre::addOriXlineInfo>},
        {&YxDbCircle::desc, &recordAs<YxDbCircle, &Centre::addOriCircleInfo>},
        {&YxDbArc::desc, &recordAs<YxDbArc, &Centre::addOriArcInfo>},
        {&YxDbEllipse::desc, &recordAs<YxDbEllipse, &Centre::addOriEllipseInfo>},
        {&YxDbPoint::desc, &recordAs<YxDbPoint, &Centre::addOriPointInfo>},
        {&YxDbText::desc, &recordAs<YxDbText, &Centre::addOriTextInfo>},
        {&YxDbMText::desc, &recordAs<YxDbMText, &Centre::addOriMTextInfo>},
    };
    return recordWith(kOrder, *this, entity, id, change);
}

/// Completes a record with a copy of the entity and replaces the entity's earlier record. The earlier copy stays until
/// the centre goes: another centre may know it too.
bool ConstraintPropertiesCmdCenter::store(const YxDbObjectId& id, const YxDbEntity& entity,
                                          const std::optional<PropertiesOriRecord>& record) {
    if (!record)
        return false;
    YxDbEntity* copy = copyOf(entity);
    if (copy == nullptr)
        return false;
    m_copies.keep(copy);
    PropertiesOriRecord& stored = oriInfos[id];
    stored = *record;
    stored.preEditCopy = copy;
    return true;
}

bool ConstraintPropertiesCmdCenter::hasFixOfLine(const YxDbObjectId& id) const {
    return isFixedLine(id);
}

bool ConstraintPropertiesCmdCenter::addOriLineInfo(const YxDbLine* line, const YxDbObjectId& id, int property,
                                                   int coordinate, double value, std::vector<double> point) {
    if (line == nullptr)
        return false;
    const PropertyChange change{property, coordinate, value, std::move(point)};
    return store(id, *line, lineRecord(*line, change, hasFixOfLine(id)));
}

bool ConstraintPropertiesCmdCenter::addOriRayInfo(const YxDbRay* ray, const YxDbObjectId& id, int property,
                                                  int coordinate, double value, std::vector<double> point) {
    if (ray == nullptr)
        return false;
    const PropertyChange change{property, coordinate, value, std::move(point)};
    return store(id, *ray, rayRecord(*ray, change, hasFixOfLine(id)));
}

bool ConstraintPropertiesCmdCenter::addOriXlineInfo(const YxDbXline* xline, const YxDbObjectId& id, int property,
                                                    int coordinate, double value, std::vector<double> point) {
    if (xline == nullptr)
        return false;
    const PropertyChange change{property, coordinate, value, std::move(point)};
    return store(id, *xline, xlineRecord(*xline, change, hasFixOfLine(id)));
}

bool ConstraintPropertiesCmdCenter::addOriCircleInfo(const YxDbCircle* circle, const YxDbObjectId& id, int property,
                                                     int coordinate, double value, std::vector<double> point) {
    if (circle == nullptr)
        return false;
    return store(id, *circle, circleRecord(*circle, {property, coordinate, value, std::move(point)}));
}

bool ConstraintPropertiesCmdCenter::addOriArcInfo(const YxDbArc* arc, const YxDbObjectId& id, int property,
                                                  int coordinate, double value, std::vector<double> point) {
    if (arc == nullptr)
        return false;
    return store(id, *arc, arcRecord(*arc, {property, coordinate, value, std::move(point)}));
}

bool ConstraintPropertiesCmdCenter::addOriEllipseInfo(const YxDbEllipse* ellipse, const YxDbObjectId& id, int property,
                                                      int coordinate, double value, std::vector<double> point) {
    if (ellipse == nullptr)
        return false;
    return store(id, *ellipse, ellipseRecord(*ellipse, {property, coordinate, value, std::move(point)}));
}

bool ConstraintPropertiesCmdCenter::addOriPointInfo(const YxDbPoint* point, const YxDbObjectId& id, int property,
                                                    int coordinate, double value, std::vector<double> newPoint) {
    if (point == nullptr)
        return false;
    return store(id, *point, pointRecord(*point, {property, coordinate, value, std::move(newPoint)}));
}

bool ConstraintPropertiesCmdCenter::addOriTextInfo(const YxDbText* text, const YxDbObjectId& id, int property,
                                                   int coordinate, double value, std::vector<double> point) {
    if (text == nullptr)
        return false;
    return store(id, *text, textRecord(*text, {property, coordinate, value, std::move(point)}));
}

bool ConstraintPropertiesCmdCenter::addOriMTextInfo(const YxDbMText* text, const YxDbObjectId& id, int property,
                                                    int coordinate, double value, std::vector<double> point) {
    if (text == nullptr)
        return false;
    return store(id, *text, mtextRecord(*text, {property, coordinate, value, std::move(point)}));
}

bool ConstraintPropertiesCmdCenter::addOriPolylineInfo(const YxDbPolyline* polyline, const YxDbObjectId& id,
                                                       int property, int vertex, const YxGePoint3d& newVertex) {
    return polyline != nullptr && store(id, *polyline, polylineRecord(*polyline, property, vertex, newVertex));
}

bool ConstraintPropertiesCmdCenter::addOriSplineInfo(const YxDbSpline* spline, const YxDbObjectId& id, int property,
                                                     int vertex, const YxGePoint3d& newPoint) {
    return spline != nullptr && store(id, *spline, splineRecord(*spline, property, vertex, newPoint));
}
