#include <algorithm>
#include <cmath>

#include "commands/break/ConstraintTrimCmdCenter.h"
#include "editing/Verbs.h"
#include "editing/commands/cut/Cutting.h"
#include "editing/commands/cut/RingCutting.h"
#include "geometry/construction/Splitting.h"
#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Parameters.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

namespace {

/// The parameters at which cutting edges meet the curve, ascending.
std::vector<double> cutParams(const EditContext& context, const std::string& name,
                              const std::vector<std::string>& edges) {
    const Shape shape = context.drawing.shape(name);
    std::vector<double> params;
    for (const std::string& edge : edges)
        for (const Crossing& crossing : intersect(shape, context.drawing.shape(edge)))
            params.push_back(normalised(shape, ontoVertex(shape, crossing.paramA)));
    if (params.empty())
        throw EditError("no cutting edge meets " + name + "; choose edges that cross it, or extend them first");
    std::sort(params.begin(), params.end());
    // Edges that meet the curve in one point cut it in one place.
    const auto same = [](double a, double b) { return b - a <= 1e-9 * (1.0 + std::abs(a)); };
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

void runTrim(EditText& text, EditContext& context) {
    const std::string name = takeEntity(text, context);
    text.expect("at");
    const Vec2 pick = text.point("a point on the part to remove");
    text.expect("by");
    const std::vector<std::string> edges = takeEntities(text, context, "a cutting edge", {});
    text.expectEnd();
    refuseFixed(context, name);
    const Shape shape = context.drawing.shape(name);
    refuseNoCurve(name, shape, "trimmed");
    for (const std::string& edge : edges) {
        refuseNoCurve(edge, context.drawing.shape(edge), "cutting edges");
        if (edge == name)
            throw EditError(name + " cannot be its own cutting edge");
    }
    const Part part = partAround(shape, name, cutParams(context, name, edges), paramOnCurve(shape, name, pick));
    if (const auto* polyline = std::get_if<PolylineShape>(&shape); polyline == nullptr || !polyline->closed)
        return removePart(context, name, part.first, part.last);
    cutRing(context, name, part.first, part.last,
            [&](double first, double last) { removePart(context, name, first, last); });
}

}  // namespace

const EditVerb kTrimVerb{"trim", "trim ENTITY at POINT by ENTITY...", "trim g3 at 8,0 by g7",
                         "removes the part of a curve that lies around a point between cutting edges", &runTrim};

}  // namespace holdfast::editing
