#include <algorithm>

#include "editing/Evaluation.h"
#include "editing/FarPlaces.h"
#include "editing/SegmentNames.h"
#include "editing/commands/fillet/ChamferGeometry.h"
#include "editing/commands/fillet/FilletPolyline.h"
#include "editing/commands/join/OpenPolyline.h"
#include "geometry/curves/Polylines.h"

namespace holdfast::editing {

namespace {

/// One of two polylines that a fillet or chamfer joins.
struct JoinSide {
    std::string name;
    PolylineCut cut;
    bool turned;  ///< its direction is not that of the joined polyline
};

bool isConstrained(const Drawing& drawing, const std::string& name) {
    return !HostAccess::reactors(drawing.entity(name)).empty();
}

/// The two ends are moved, and the centre judges the segments that they belong to.
void moveEnds(ConstraintFilletCmdCenter& centre, Drawing& drawing, const JoinSide& first, const JoinSide& second) {
    const OpenPolyline openFirst(drawing, first.name), openSecond(drawing, second.name);
    const auto point = [](const JoinSide& side) { return YxGePoint3d(side.cut.point.x, side.cut.point.y, 0.0); };
    centre.setTwoPolyLineDate(openFirst.get(), openSecond.get());
    drawing.write(first.name, first.cut.shape);
    drawing.write(second.name, second.cut.shape);
    centre.setFirstPolyLineConstraint(openFirst.get(), first.cut.moved == CurveEnd::start,
                                      static_cast<unsigned int>(first.cut.segment), point(first));
    centre.setSecondPolyLineConstraint(openSecond.get(), second.cut.moved == CurveEnd::start,
                                       static_cast<unsigned int>(second.cut.segment), point(second));
    if (first.cut.leading + second.cut.leading == 0)
        return;
    drawing.write(first.name, withoutLeading(polylineShape(drawing, first.name), first.cut.leading));
    drawing.write(second.name, withoutLeading(polylineShape(drawing, second.name), second.cut.leading));
    // The records count from the vertices that are gone.
    centre.setTwoPolyLineDate(openFirst.get(), openSecond.get());
}

/// The polyline in the joined direction; the places at the ends of its segments are turned with it.
PolylineShape inJoinedDirection(Drawing& drawing, const JoinSide& side) {
    PolylineShape shape = polylineShape(drawing, side.name);
    if (!side.turned)
        return shape;
    swapSegmentEnds(drawing, side.name);
    return reversedPolyline(shape);
}

template <class T>
void append(std::vector<T>& list, const std::vector<T>& more, std::size_t from) {
    list.insert(list.end(), more.begin() + static_cast<std::ptrdiff_t>(from), more.end());
}

/// The second behind the first, its vertices with identifier 0. Without a segment between them, which is told by its
/// bulge, the last vertex of the first is the first of the second.
PolylineShape joined(PolylineShape first, const PolylineShape& second, const std::optional<double>& between) {
    const bool shared = !between;
    first.bulges.back() = shared ? second.bulges.front() : *between;
    append(first.vertices, second.vertices, shared ? 1 : 0);
    append(first.bulges, second.bulges, shared ? 1 : 0);
    first.ids.resize(first.vertices.size(), 0);
    return first;
}

/// `done` says what was done in the reasons of what goes.
void join(EditContext& context, const JoinSide& first, const JoinSide& second, const std::optional<double>& between,
          const std::string& done) {
    Drawing& drawing = context.drawing;
    context.edited = {first.name, second.name};
    context.reasons.noteEdited(first.name, done);
    context.reasons.noteEdited(second.name, done, {first.name});
    ConstraintFilletCmdCenter centre;
    moveEnds(centre, drawing, first, second);
    {
        const OpenPolyline openFirst(drawing, first.name), openSecond(drawing, second.name);
        centre.setTwoPolyLineCloneDate(openFirst.get(), openSecond.get());
        drawing.write(first.name,
                      joined(inJoinedDirection(drawing, first), inJoinedDirection(drawing, second), between));
        centre.setTwoPolyLineConstraint(openFirst.get(), first.turned, openSecond.get(), !second.turned);
    }
    context.reasons.noteAtOnce(drawing);
    drawing.erase(second.name);
    deleteCollected(context, centre);
    settleSegments(drawing, first.name);
}

}  // namespace

void filletPolylines(EditContext& context, const PolylineSide& first, const PolylineSide& second, double radius) {
    // The centre counts the shared vertex only when the first polyline has records.
    if (radius == 0.0 && !isConstrained(context.drawing, first.name) && isConstrained(context.drawing, second.name))
        return filletPolylines(context, second, first, radius);
    const FacingEnds ends = facingEnds(first.shape, second.shape);
    const FilletedSegment a = filletedSegment(first, ends.first), b = filletedSegment(second, ends.second);
    const CurveFillet fillet = filletCurves(a.side, b.side, radius);
    refuseFarCorner(context, {first.name, second.name}, a.side.shape, fillet.first, fillet.firstEnd);
    refuseFarCorner(context, {second.name, first.name}, b.side.shape, fillet.second, fillet.secondEnd);
    const CutSegment cutA = cutSegment(a.side.name, first.shape, a.segment, fillet.first, fillet.firstEnd);
    CutSegment cutB = cutSegment(b.side.name, second.shape, b.segment, fillet.second, fillet.secondEnd);
    if (!fillet.arc)
        cutB.point = cutA.point;  // one vertex, to the last bit
    join(context, {first.name, cutAt(first, a.segment, cutA), cutA.moved == CurveEnd::start},
         {second.name, cutAt(second, b.segment, cutB), cutB.moved == CurveEnd::end},
         fillet.arc ? std::optional(bulgeFrom(*fillet.arc, cutA.point)) : std::nullopt, "filleted");
}

void chamferPolylines(EditContext& context, const PolylineSide& first, const PolylineSide& second,
                      const PolylineChamfer& found) {
    const auto& [a, b, chamfer] = found;
    refuseFarCorner(context, {first.name, second.name}, a.side.shape, chamfer.first, chamfer.firstEnd);
    refuseFarCorner(context, {second.name, first.name}, b.side.shape, chamfer.second, chamfer.secondEnd);
    const CutSegment cutA = cutSegment(a.side.name, first.shape, a.segment, chamfer.first, chamfer.firstEnd);
    const CutSegment cutB = cutSegment(b.side.name, second.shape, b.segment, chamfer.second, chamfer.secondEnd);
    join(context, {first.name, cutAt(first, a.segment, cutA), cutA.moved == CurveEnd::start},
         {second.name, cutAt(second, b.segment, cutB), cutB.moved == CurveEnd::end}, 0.0, "chamfered");
}

}  // namespace holdfast::editing
