#include "editing/commands/fillet/FilletPolyline.h"

#include "editing/Evaluation.h"
#include "editing/FarPlaces.h"
#include "editing/SegmentNames.h"
#include "editing/commands/fillet/FilletCurves.h"
#include "editing/commands/join/OpenPolyline.h"

namespace holdfast::editing {

namespace {

PolylineShape withoutVertices(PolylineShape polyline, std::size_t first, std::size_t count) {
    const auto from = static_cast<std::ptrdiff_t>(first), to = static_cast<std::ptrdiff_t>(first + count);
    polyline.vertices.erase(polyline.vertices.begin() + from, polyline.vertices.begin() + to);
    polyline.bulges.erase(polyline.bulges.begin() + from, polyline.bulges.begin() + to);
    polyline.ids.erase(polyline.ids.begin() + from, polyline.ids.begin() + to);
    return polyline;
}

/// What the host does to the vertices once the centre has seen the fillet.
PolylineShape finished(const PolylineShape& polyline, const SegmentFillet& fillet) {
    if (fillet.vanishing > 0)
        return withoutVertices(polyline, fillet.first + 2, fillet.vanishing);
    if (fillet.mode == SegmentFillet::Mode::kBehind || fillet.seam == 0)
        return polyline;
    const std::size_t behindSeam = fillet.seam + (fillet.mode == SegmentFillet::Mode::kClosingCorner ? 1 : 0);
    return countedFrom(polyline, polyline.vertices.size() - behindSeam);
}

}  // namespace

void filletWithin(EditContext& context, const std::string& polyline, const SegmentFillet& fillet,
                  const std::string& done) {
    Drawing& drawing = context.drawing;
    context.edited = {polyline};
    context.reasons.noteEdited(polyline, done);
    if (fillet.sharp)
        context.judgedAnew = {polyline};
    {
        const OpenPolyline open(drawing, polyline);
        drawing.write(polyline, fillet.counted);
        ConstraintFilletCmdCenter centre;
        centre.setSelfPolyLineDate(open.get(), static_cast<unsigned int>(fillet.first),
                                   static_cast<unsigned int>(fillet.second), fillet.mode, fillet.sharp);
        drawing.write(polyline, fillet.edited);
        centre.setSelfPolyLineConstraint(open.get());
        drawing.write(polyline, finished(polylineShape(drawing, polyline), fillet));
        deleteCollected(context, centre);
    }
    settleSegments(drawing, polyline);
}

LedTogether leadPolyline(EditContext& context, const PolylineSide& polyline, const FilletSide& curve,
                         const LedPair& pair, const std::string& done) {
    const std::size_t segment = pair.segment.segment;
    refuseFarCorner(context, {polyline.name, curve.name}, pair.segment.side.shape, pair.first, pair.firstEnd);
    refuseFarCorner(context, {curve.name, polyline.name}, curve.shape, pair.second, pair.secondEnd);
    const PolylineCut cut = cutAt(
        polyline, segment, cutSegment(pair.segment.side.name, polyline.shape, segment, pair.first, pair.firstEnd));
    Drawing& drawing = context.drawing;
    context.edited = {polyline.name, curve.name};
    context.reasons.noteEdited(polyline.name, done);
    LedTogether names{polyline.name, replaceOtherKind(context, curve, pair.second), {}};
    const bool keepsCurve = names.second == curve.name;
    {
        const OpenPolyline open(drawing, polyline.name);
        ConstraintFilletCmdCenter centre;
        centre.setOnePolyLineDate(open.get());
        if (keepsCurve) {
            centre.setEntityInfo(&drawing.entity(curve.name), nullptr);
            drawing.write(curve.name, pair.second);
        }
        drawing.write(polyline.name, cut.shape);
        centre.setOnePolyLineConstraint(open.get(), cut.moved == CurveEnd::start,
                                        static_cast<unsigned int>(cut.segment), {cut.point.x, cut.point.y, 0.0});
        if (cut.leading > 0)
            drawing.write(polyline.name, withoutLeading(polylineShape(drawing, polyline.name), cut.leading));
        deleteCollected(context, centre);
    }
    if (pair.between)
        names.between = addBetween(context, *pair.between, names.second, polyline.name);
    settleSegments(drawing, polyline.name);
    return names;
}

void filletWithCurve(EditContext& context, const PolylineSide& polyline, const FilletSide& curve, double radius) {
    FilletedSegment segment = filletedSegment(polyline, endTowards(polyline.shape, curve.shape));
    const CurveFillet fillet = filletCurves(segment.side, curve, radius);
    LedPair pair{std::move(segment), fillet.first, fillet.firstEnd, fillet.second, fillet.secondEnd};
    if (fillet.arc)
        pair.between = *fillet.arc;
    leadPolyline(context, polyline, curve, pair, "filleted");
}

}  // namespace holdfast::editing
