#include "editing/commands/cut/Cutting.h"

#include <algorithm>
#include <cmath>

#include <yxdb/YxDbPolyline.h>

#include "editing/Evaluation.h"
#include "editing/SegmentNames.h"
#include "geometry/Tolerances.h"
#include "geometry/construction/Splitting.h"
#include "geometry/curves/Parameters.h"
#include "hosting/HostOpening.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

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

/// The centre takes all dependencies off a second piece and puts those of its segments back. Where that is the entity
/// itself, the others still depend on it: they are for the host to clear away.
void giveBack(YxDbEntity& entity, const std::vector<YxDbObjectId>& reactors) {
    for (const YxDbObjectId& reactor : reactors)
        if (HostAccess::reactorCount(entity, reactor) == 0)
            HostAccess::addReactor(entity, reactor);
}

}  // namespace

double ontoVertex(const Shape& shape, double param) {
    // Geometry tells a vertex from a point next to it more finely than the module, which would then take a cut at the
    // one for a cut at the other.
    constexpr double near = 1e-6;
    const double vertex = std::round(param);
    const bool isNear = std::abs(param - vertex) <= near;
    return isNear && std::holds_alternative<PolylineShape>(shape) ? vertex : param;
}

CutPieces cutOut(const Shape& shape, const std::string& name, double firstParam, double lastParam) {
    if (periodOf(shape) > 0.0) {
        if (firstParam == lastParam)
            throw EditError(name + " is closed and cannot be broken at one point; give two points");
        return {partOf(shape, lastParam, firstParam), std::nullopt};
    }
    const Remainder rest = split(shape, std::min(firstParam, lastParam), std::max(firstParam, lastParam));
    if (firstParam == lastParam && !(rest.before && rest.after))
        throw EditError("nothing is cut at " + spoken(pointAt(shape, firstParam)) + ", an end of " + name +
                        "; give a point between its ends");
    if (!rest.before && !rest.after)
        throw EditError("nothing of " + name + " would be left; erase it instead, or cut less");
    return {rest.before, rest.after};
}

CutCurve::CutCurve(const EditContext& context, const std::string& name, double firstParam, double lastParam)
    : m_entity(context.drawing.entity(name)), m_shape(context.drawing.shape(name)) {
    const auto* polyline = std::get_if<PolylineShape>(&m_shape);
    if (polyline == nullptr || (tells(firstParam) && tells(lastParam)))
        return;
    PolylineShape stretched = *polyline;
    stretched.bulges.assign(stretched.vertices.size(), 0.0);
    for (std::size_t i = 0; i < stretched.vertices.size(); ++i)
        stretched.vertices[i] = {static_cast<double>(i), 0.0};
    m_shape = stretched;
    m_stretched = makeEntity(m_shape);
}

YxGePoint3d CutCurve::pointAt(double param) const {
    const Vec2 point = geometry::pointAt(m_shape, param);
    return {point.x, point.y, 0.0};
}

/// The centre reads a parameter a little below a vertex as one inside the segment before it.
bool CutCurve::tells(double param) const {
    double found = 0.0;
    static_cast<const YxDbCurve&>(m_entity).getParamAtPoint(pointAt(param), found);
    return std::abs(found - param) <= kAtVertex && std::trunc(found) == std::trunc(param);
}

std::string applyCut(EditContext& context, const std::string& name, const CutPieces& pieces,
                     ConstraintBreakCmdCenter& centre) {
    Drawing& drawing = context.drawing;
    context.edited = {name};
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
    const std::vector<YxDbObjectId> reactors = HostAccess::reactors(drawing.entity(name));
    if (!behind.isNull())
        centre.setSecondCurve(opened<YxDbEntity>(behind, YxDb::kForWrite).get());
    if (behind == id)
        giveBack(drawing.entity(name), reactors);
    context.reasons.noteEdited(name, "cut", {name, created});
    deleteCollected(context, centre);
    for (const std::string& piece : {name, created})
        if (isPolyline && !piece.empty())
            renewSegmentNames(drawing, piece);
    return created;
}

}  // namespace holdfast::editing
