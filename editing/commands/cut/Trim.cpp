#include <algorithm>
#include <cmath>

#include "commands/break/ConstraintTrimCmdCenter.h"
#include "editing/Commands.h"
#include "editing/commands/cut/Cutting.h"
#include "editing/commands/cut/RingCutting.h"
#include "geometry/Tolerances.h"
#include "geometry/construction/Splitting.h"
#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Parameters.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

namespace {

/// The parameters at which cutting edges meet the curve, ascending.
std::vector<double> cutParams(const Drawing& drawing, const std::string& name, const std::vector<Name>& edges) {
    const Shape shape = drawing.shape(name);
    std::vector<double> params;
    for (const Name& edge : edges)
        for (const Crossing& crossing : intersect(shape, drawing.shape(edge.value)))
            params.push_back(normalised(shape, ontoVertex(shape, crossing.paramA)));
    if (params.empty())
        throw EditError("no cutting edge meets " + name + "; choose edges that cross it, or extend them first");
    std::sort(params.begin(), params.end());
    // Edges that meet the curve in one point cut it in one place.
    const auto same = [](double a, double b) { return b - a <= kSamePoint * (1.0 + std::abs(a)); };
    params.erase(std::unique(params.begin(), params.end(), same), params.end());
    return params;
}

/// The part of the curve between cuts in which the picked parameter lies.
struct Part {
    double first = 0.0;
    double last = 0.0;
};

Part partAround(const Shape& shape, const std::string& name, const std::vector<double>& cuts, double pick) {
    const auto next = std::upper_bound(cuts.begin(), cuts.end(), pick);
    if (periodOf(shape) > 0.0) {
        if (cuts.size() < 2)
            throw EditError(name +
                            " is closed and the cutting edges meet it only once; it takes two places to trim it");
        return {next == cuts.begin() ? cuts.back() : *std::prev(next), next == cuts.end() ? cuts.front() : *next};
    }
    const ParamRange range = paramRange(shape);
    const Part part{next == cuts.begin() ? range.first : *std::prev(next), next == cuts.end() ? range.last : *next};
    if (part.first <= range.first && part.last >= range.last)
        throw EditError("the cutting edges only touch the ends of " + name + "; nothing is cut");
    return part;
}

/// Tells the centre the part to remove as the host does: all pieces, and the index of the one that goes.
void setRemovedPart(ConstraintTrimCmdCenter& centre, const CutCurve& curve, double firstParam, double lastParam) {
    const std::unique_ptr<YxDbEntity> removed = makeEntity(partOf(curve.shape(), firstParam, lastParam));
    YxArray<void*> pieces;
    pieces.append(removed.get());
    YxArray<int> indices;
    indices.append(0);
    centre.setPtParam(&curve.entity(), indices, pieces);
}

void removePart(EditContext& context, const std::string& name, double firstParam, double lastParam) {
    const CutPieces pieces = cutOut(context.drawing.shape(name), name, firstParam, lastParam);
    const CutCurve curve(context, name, firstParam, lastParam);
    ConstraintTrimCmdCenter centre;
    setRemovedPart(centre, curve, firstParam, lastParam);
    applyCut(context, name, pieces, centre);
}

void requireEdges(const Trim& edit, const Drawing& drawing) {
    for (const Name& edge : edit.by) {
        refuseNoCurve(edge.value, drawing.shape(edge.value), "cutting edges");
        if (edge == edit.entity)
            throw EditError(edge.value + " cannot be its own cutting edge");
    }
}

Part resolved(const Trim& edit, const Drawing& drawing, std::vector<std::string>* remarks = nullptr) {
    const std::string& name = edit.entity.value;
    requireEntity(drawing, edit.entity);
    requireEntities(drawing, edit.by);
    refuseFixed(drawing, name);
    const Shape shape = drawing.shape(name);
    refuseNoCurve(name, shape, "trimmed");
    requireEdges(edit, drawing);
    const std::vector<double> cuts = cutParams(drawing, name, edit.by);
    return partAround(shape, name, cuts, paramOnCurve(shape, name, edit.at, remarks));
}

}  // namespace

void require(const Trim& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Trim& edit, EditContext& context) {
    const std::string& name = edit.entity.value;
    const Part part = resolved(edit, context.drawing, &context.remarks);
    const Shape shape = context.drawing.shape(name);
    if (const auto* polyline = std::get_if<PolylineShape>(&shape); polyline == nullptr || !polyline->closed)
        return removePart(context, name, part.first, part.last);
    cutRing(context, name, part.first, part.last,
            [&](double first, double last) { removePart(context, name, first, last); });
}

}  // namespace holdfast::editing
