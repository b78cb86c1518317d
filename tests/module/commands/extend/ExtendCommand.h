#pragma once

#include <string>

#include "commands/extend/ConstraintExtendCmdCenter.h"
#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::module {

/// Opens a resident entity for write, edits it and hands it to the centre, as EXTEND does.
template <class T, class Edit>
int finishExtend(Scene& scene, const std::string& name, ConstraintExtendCmdCenter& centre, Edit edit) {
    const YxSmartPtr<YxDbObject> open = YxDbObjectIdImpl::openObject(scene.id(name), YxDb::kForWrite, false);
    if (open.isNull())
        return centre.deleteConstraint(nullptr);
    edit(static_cast<T&>(*open));
    return centre.deleteConstraint(static_cast<const YxDbEntity*>(open.get()));
}

/// The whole EXTEND of a line.
inline int extendLine(Scene& scene, const std::string& name, ConstraintExtendCmdCenter& centre,
                      const YxGePoint3d& newEnd, int code) {
    centre.setDeleteConstraint(scene.id(name), newEnd, code);
    return finishExtend<YxDbLine>(scene, name, centre, [&](YxDbLine& line) {
        const LineData data = EntityAccess::line(line);
        EntityAccess::setLine(line, code == 1 ? newEnd : data.start, code == 2 ? newEnd : data.end);
    });
}

/// The whole EXTEND of a polyline's first or last vertex.
inline int extendPolyline(Scene& scene, const std::string& name, ConstraintExtendCmdCenter& centre,
                          const YxGePoint3d& newEnd, int code) {
    centre.setDeleteConstraint(scene.id(name), newEnd, code);
    return finishExtend<YxDbPolyline>(scene, name, centre, [&](YxDbPolyline& polyline) {
        const std::size_t vertex = code == 1 ? 0 : EntityAccess::vertexCount(polyline) - 1;
        EntityAccess::setVertexPoint(polyline, vertex, {newEnd.x, newEnd.y});
    });
}

/// The whole EXTEND of a spline: its control points become these.
inline int extendSpline(Scene& scene, const std::string& name, ConstraintExtendCmdCenter& centre,
                        const YxGePoint3d& newEnd, int code, const std::vector<YxGePoint3d>& control) {
    centre.setDeleteConstraint(scene.id(name), newEnd, code);
    return finishExtend<YxDbSpline>(scene, name, centre, [&](YxDbSpline& spline) {
        std::vector<double> knots(4, 0.0);
        for (std::size_t k = 4; k < control.size(); ++k)
            knots.push_back(1.0);
        knots.insert(knots.end(), 4, 2.0);
        EntityAccess::setSpline(spline, {.degree = 3, .periodic = false, .control = control, .knots = knots});
    });
}

}  // namespace holdfast::module
