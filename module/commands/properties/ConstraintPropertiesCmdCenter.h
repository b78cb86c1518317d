#pragma once

#include "commands/properties/PropertiesOriRecord.h"
#include "core/Export.h"
#include "evaluation/ConstraintStaticEditCmdCenter.h"
#include "evaluation/CopiesInWaiting.h"

#include <map>
#include <optional>
#include <vector>

#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbObjectId.h>

class AssocConstraintHeader;
class YxDbArc;
class YxDbCircle;
class YxDbEllipse;
class YxDbEntity;
class YxDbLine;
class YxDbMText;
class YxDbPoint;
class YxDbPolyline;
class YxDbRay;
class YxDbSpline;
class YxDbText;
class YxDbXline;
namespace holdfast::module {
struct PropertyChange;
}

/// Hands changed properties of constrained entities to the evaluator instead of letting the palette write them.
///
/// Calls:  ( addOriInfo | addExpanderOriInfo  getWithResetDelConsCounts? )*  addDataToWork
/// The palette reports each value before it applies it. A point off the drawing plane cannot be kept with 2-D
/// constraints: it deletes those of the entity. Owns the copies that no header has taken; serves one command.
class HOLDFAST_EXPORT ConstraintPropertiesCmdCenter : public ConstraintStaticEditCmdCenter {
public:
    ConstraintPropertiesCmdCenter();
    ConstraintPropertiesCmdCenter(const ConstraintPropertiesCmdCenter&) = default;
    ConstraintPropertiesCmdCenter& operator=(const ConstraintPropertiesCmdCenter&) = default;
    ~ConstraintPropertiesCmdCenter() override;

    /// A point property given whole as x, y, z. True when it is recorded; it then replaces the entity's earlier record.
    /// False without constraints, for a property that the type does not have, and for fewer than three values. With z
    /// off the plane: false, and the entity's constraints are deleted and counted.
    bool addOriInfo(const YxDbObjectId& id, int property, std::vector<double> point);
    /// One coordinate (0 x, 1 y, 2 z) of a point property, or a scalar property. Off the plane as above, for a scalar
    /// with coordinate 2 as well.
    bool addOriInfo(const YxDbObjectId& id, int property, int coordinate, double value);
    /// One coordinate of a polyline's vertex or a spline's control point; row = vertex number * 4 + coordinate. A
    /// vertex is recorded when two coordinates have come in, a control point with three. 1 accepted, -1 refused.
    int addExpanderOriInfo(const YxDbObjectId& id, int ignored, int property, int row, double value);
    /// How many constraints the last deletion deleted; once, then 0.
    int getWithResetDelConsCounts();
    /// Fills the header of the first record's group with all records, feeds its converter and marks the group changed.
    /// The records stay. Nothing is written without a record, a group, a header or a converter.
    void addDataToWork();

    /// Fewer than three values: false, and the point stays.
    bool oriArrConvertPoint(std::vector<double> values, YxGePoint3d& point) const;
    /// The base with one coordinate replaced.
    // KEEP: a coordinate beyond z gives the origin (PropertiesPoint.IsTheOriginForACoordinateBeyondZ).
    YxGePoint3d oriVarConConvertPoint(double value, int coordinate, const YxGePoint3d& base) const;
    /// True when a line, ray or construction line carries a fixed constraint.
    bool hasFixOfLine(const YxDbObjectId& id) const;

protected:
    friend struct LvTestAccess;
    // One recorder for each type of entity: null, a property that the type does not have, a value out of its range and
    // an entity that cannot be copied record nothing and give false.
    bool addOriLineInfo(const YxDbLine* line, const YxDbObjectId& id, int property, int coordinate, double value,
                        std::vector<double> point);
    bool addOriRayInfo(const YxDbRay* ray, const YxDbObjectId& id, int property, int coordinate, double value,
                       std::vector<double> point);
    bool addOriXlineInfo(const YxDbXline* xline, const YxDbObjectId& id, int property, int coordinate, double value,
                         std::vector<double> point);
    bool addOriCircleInfo(const YxDbCircle* circle, const YxDbObjectId& id, int property, int coordinate, double value,
                          std::vector<double> point);
    bool addOriArcInfo(const YxDbArc* arc, const YxDbObjectId& id, int property, int coordinate, double value,
                       std::vector<double> point);
    bool addOriEllipseInfo(const YxDbEllipse* ellipse, const YxDbObjectId& id, int property, int coordinate,
                           double value, std::vector<double> point);
    bool addOriPointInfo(const YxDbPoint* point, const YxDbObjectId& id, int property, int coordinate, double value,
                         std::vector<double> newPoint);
    bool addOriTextInfo(const YxDbText* text, const YxDbObjectId& id, int property, int coordinate, double value,
                        std::vector<double> point);
    bool addOriMTextInfo(const YxDbMText* text, const YxDbObjectId& id, int property, int coordinate, double value,
                         std::vector<double> point);
    bool addOriPolylineInfo(const YxDbPolyline* polyline, const YxDbObjectId& id, int property, int vertex,
                            const YxGePoint3d& newVertex);
    bool addOriSplineInfo(const YxDbSpline* spline, const YxDbObjectId& id, int property, int vertex,
                          const YxGePoint3d& newPoint);

    std::map<YxDbObjectId, PropertiesOriRecord> oriInfos;
    int expanderCount = 0;
    int delConsCount = 0;
    YxGePoint3d expanderPoint;

private:
    bool recordPoint(const YxDbEntity& entity, const YxDbObjectId& id, const holdfast::module::PropertyChange& change);
    bool recordValue(const YxDbEntity& entity, const YxDbObjectId& id, const holdfast::module::PropertyChange& change);
    bool store(const YxDbObjectId& id, const YxDbEntity& entity, const std::optional<PropertiesOriRecord>& record);
    int addPolylineRow(const YxDbPolyline& polyline, const YxDbObjectId& id, int property, int row, double value);
    int addSplineRow(const YxDbSpline& spline, const YxDbObjectId& id, int property, int row, double value);
    void resetExpander();
    void deleteConstraintsOf(const YxDbObjectId& id);
    void handOver(AssocConstraintHeader& header, const YxDbObjectId& id, const PropertiesOriRecord& record);

    holdfast::module::CopiesInWaiting m_copies;
};
