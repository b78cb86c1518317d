#include "workbench/editing/Cutting.h"

#include <algorithm>
#include <cmath>

#include <yxdb/YxDbPolyline.h>

#include "workbench/drawing/HostShapes.h"
#include "workbench/geometry/Parameters.h"
#include "workbench/geometry/Splitting.h"

namespace holdfast {

namespace {

Shape withoutIdentifiers(Shape shape) {
    if (auto* polyline = std::get_if<PolylineShape>(&shape))
        polyline->ids.assign(polyline->vertices.size(), 0);
    return shape;
}

/// A copy of the entity with another shape, onto which the host copies the reactors too.
std::unique_ptr<YxDbEntity> pieceOf(const YxDbEntity& whole, const Shape& shape) {
    std::unique_ptr<YxDbEntity> piece = makeEntity(withoutIdentifiers(shape));
    for (const YxDbObjectId& reactor : HostAccess::reactors(whole))
        HostAccess::addReactor(*piece, reactor);
    return piece;
}

}  // namespace

double ontoVertex(const Shape& shape, double param) {
    // Geometry tells a vertex from a point next to it more finely than the module, which would then take a cut at the
    // one for a cut at the other.
    constexpr double kAtVertex = 1e-6;
    const double vertex = std::round(param);
    const bool isNear = std::abs(param - vertex) <= kAtVertex;
    return isNear && std::holds_alternative<PolylineShape>(shape) ? vertex : param;
}

CutPieces cutOut(const Shape& shape, const std::string& name, double firstParam, double lastParam) {
    if (periodOf(shape) > 0.0) {
        if (firstParam == lastParam)
            throw EditError(name + " is closed and cannot be broken at one point; give two points");
        return {partOf(shape, lastParam, firstParam), std::nullopt};
    }
    const Remainder rest = split(shape, std::min(firstParam, lastParam), std::max(firstParam, lastParam));
    if (!rest.before && !rest.after)
        throw EditError("nothing of " + name + " would be left; erase it instead, or cut less");
    return {rest.before, rest.after};
}

void openAtVertexZero(EditContext& context, const std::string& name) {
    Shape shape = context.drawing.shape(name);
    auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline == nullptr || !polyline->closed)
        return;
    // The last segment keeps its name, which ends at the identifier of vertex 0.
    polyline->vertices.push_back(polyline->vertices.front());
    polyline->bulges.push_back(0.0);
    polyline->ids.push_back(polyline->ids.front());
    polyline->closed = false;
    context.drawing.write(name, shape);
}

std::string applyCut(EditContext& context, const std::string& name, const CutPieces& pieces,
                     ConstraintBreakCmdCenter& centre) {
    Drawing& drawing = context.drawing;
    context.edited.push_back(name);
    const YxDbObjectId id = drawing.id(name);
    const bool keepsStart = pieces.first.has_value();
    const std::unique_ptr<YxDbEntity> first =
        pieceOf(drawing.entity(name), keepsStart ? *pieces.first : pieces.second.value());
    centre.setFirstCurve(id, first.get());
    drawing.write(name, readShape(*first));
    std::string created;
    if (keepsStart && pieces.second)
        created = drawing.add(withoutIdentifiers(*pieces.second), name);
    // After a cut from the start a polyline is itself what lies behind the cut. Of other curves the centre would only
    // take the dependencies away, which still hold on the entity.
    const bool isPolyline = first->isKindOf(YxDbPolyline::desc());
    const YxDbObjectId behind = keepsStart ? drawing.id(created) : isPolyline ? id : YxDbObjectId();
    if (const YxSmartPtr<YxDbObject> second = YxDbObjectIdImpl::openObject(behind, YxDb::kForWrite, false);
        !second.isNull())
        centre.setSecondCurve(static_cast<YxDbEntity*>(second.get()));
    centre.deleteConstraint();
    return created;
}

}  // namespace holdfast
