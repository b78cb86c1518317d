#include "host/model/entities/GeometryMaking.h"

#include <stdexcept>
#include <string>

#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"
#include "host/src/yxdb/curves/CurveMath.h"

namespace holdfast {

namespace {

using AddGeometry = YxConstrainedGeometry& (*)(YxDbAssoc2dConstraintGroup&, const YxDbObjectId&);

template <class T>
YxConstrainedGeometry& addAs(YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& dependency) {
    return HostAccess::addGeometry<T>(group, dependency);
}

AddGeometry adderOf(const YxDbPolyline& polyline, int segment) {
    const bool isArc = EntityAccess::isArc(polyline, static_cast<std::size_t>(segment - 1));
    return isArc ? &addAs<YxConstrainedArc> : &addAs<YxConstrainedBoundedLine>;
}

AddGeometry adderOf(const YxDbEllipse& ellipse) {
    const EllipseData data = EntityAccess::ellipse(ellipse);
    return AngleRange(data.startAngle, data.endAngle).isFullTurn() ? &addAs<YxConstrainedEllipse>
                                                                   : &addAs<YxConstrainedBoundedEllipse>;
}

AddGeometry adderOf(const YxDbEntity& entity, int segment) {
    if (entity.isKindOf(YxDbPolyline::desc()))
        return adderOf(static_cast<const YxDbPolyline&>(entity), segment);
    if (entity.isKindOf(YxDbEllipse::desc()))
        return adderOf(static_cast<const YxDbEllipse&>(entity));
    struct Row {
        const YxRxClass* type;
        AddGeometry add;
    };
    static const Row rows[] = {
        {YxDbLine::desc(), &addAs<YxConstrainedBoundedLine>}, {YxDbRay::desc(), &addAs<YxConstrainedRay>},
        {YxDbXline::desc(), &addAs<YxConstrainedLine>},       {YxDbCircle::desc(), &addAs<YxConstrainedCircle>},
        {YxDbArc::desc(), &addAs<YxConstrainedArc>},          {YxDbSpline::desc(), &addAs<YxConstrainedSpline>},
        {YxDbPoint::desc(), &addAs<YxConstrainedPoint>},      {YxDbText::desc(), &addAs<YxConstrainedDatumLine>},
        {YxDbMText::desc(), &addAs<YxConstrainedDatumLine>},
    };
    for (const Row& row : rows)
        if (entity.isKindOf(row.type))
            return row.add;
    throw std::invalid_argument(std::string("no constraint can hold on a ") + entity.isA()->name());
}

}  // namespace

YxConstrainedGeometry& addGeometryOf(const YxDbEntity& entity, int segment, YxDbAssoc2dConstraintGroup& group,
                                     const YxDbObjectId& dependency) {
    return adderOf(entity, segment)(group, dependency);
}

}  // namespace holdfast
