#include <algorithm>
#include <cmath>

#include "commands/extend/ConstraintExtendCmdCenter.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/FarPlaces.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/construction/Extending.h"
#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "hosting/HostOpening.h"

namespace holdfast::editing {

namespace {

std::string wordOf(CurveEnd end) {
    return end == CurveEnd::start ? "start" : "end";
}

void refuseWithoutEnd(const Shape& shape, const std::string& name, CurveEnd end) {
    refuseNoCurve(name, shape, "extended");
    if (periodOf(shape) > 0.0)
        throw EditError(name + " is closed and has no end to extend; break it first");
    if (!(end == CurveEnd::start ? startPoint(shape) : endPoint(shape)))
        throw EditError("the " + wordOf(end) + " of " + name + " is at infinity already; extend another end");
}

/// Along the curve from its end; parameters of arcs may come in any turn, which the remainder takes away.
double wayTo(const Shape& shape, CurveEnd end, double param) {
    const ParamRange range = paramRange(shape);
    const double way = end == CurveEnd::start ? range.first - param : param - range.last;
    const bool turns = std::holds_alternative<ArcShape>(shape) || std::holds_alternative<EllipticalArcShape>(shape);
    return turns ? way - kTurn * std::floor(way / kTurn) : way;
}

bool touches(const Shape& shape, CurveEnd end, const Shape& boundary) {
    const std::optional<Vec2> point = end == CurveEnd::start ? startPoint(shape) : endPoint(shape);
    return point && nearestOn(boundary, *point).distance <= kSamePoint * (1.0 + norm(*point));
}

/// A boundary on which the end lies as it is.
void refuseThereAlready(const Drawing& drawing, const std::string& name, CurveEnd end,
                        const std::vector<Name>& boundaries) {
    for (const Name& boundary : boundaries)
        if (touches(drawing.shape(name), end, drawing.shape(boundary.value)))
            throw EditError("the " + wordOf(end) + " of " + name + " lies on " + boundary.value +
                            " already; choose a boundary ahead of it");
}

bool crossesInside(const Shape& shape, const Shape& boundary) {
    const ParamRange range = paramRange(shape);
    const std::vector<Crossing> crossings = intersect(shape, boundary);
    return std::any_of(crossings.begin(), crossings.end(), [&](const Crossing& crossing) {
        return crossing.paramA > range.first + kSamePoint && crossing.paramA < range.last - kSamePoint;
    });
}

/// What else would meet one of the boundaries: the other end, or the curve as it is.
std::string otherWay(const Drawing& drawing, const std::string& name, CurveEnd end,
                     const std::vector<Name>& boundaries) {
    const Shape shape = drawing.shape(name);
    const CurveEnd other = end == CurveEnd::start ? CurveEnd::end : CurveEnd::start;
    const bool hasOther = (other == CurveEnd::start ? startPoint(shape) : endPoint(shape)).has_value();
    for (const Name& boundary : boundaries) {
        if (crossesInside(shape, drawing.shape(boundary.value)))
            return boundary.value + " crosses it: trim it there instead";
        if (hasOther && !touches(shape, other, drawing.shape(boundary.value)) &&
            extensionTo(shape, other, drawing.shape(boundary.value)))
            return "its " + wordOf(other) + " would, if that is extended";
    }
    return "choose another boundary";
}

/// Where the prolonged end first meets one of the boundaries.
Extension firstMeeting(const Drawing& drawing, const std::string& name, CurveEnd end,
                       const std::vector<Name>& boundaries) {
    const Shape shape = drawing.shape(name);
    std::optional<Extension> nearest;
    for (const Name& boundary : boundaries) {
        const std::optional<Extension> found = extensionTo(shape, end, drawing.shape(boundary.value));
        if (found && (!nearest || wayTo(shape, end, found->param) < wayTo(shape, end, nearest->param)))
            nearest = found;
    }
    if (!nearest)
        refuseThereAlready(drawing, name, end, boundaries);
    if (!nearest)
        throw EditError("the " + wordOf(end) + " of " + name + " does not meet " +
                        (boundaries.size() == 1 ? boundaries.front().value : std::string("any of the boundaries")) +
                        " however far it is extended; " + otherWay(drawing, name, end, boundaries));
    return *nearest;
}

/// The host's half of extend: the centre judges the entity before the edit and gets it open after it.
void moveEnd(EditContext& context, const std::string& name, CurveEnd end, const Extension& meeting) {
    Drawing& drawing = context.drawing;
    const Shape longer = withEndAt(drawing.shape(name), end, meeting.param);
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(drawing.id(name), {meeting.point.x, meeting.point.y, 0.0},
                               end == CurveEnd::start ? 1 : 2);
    context.edited.push_back(name);
    drawing.write(name, longer);
    const auto open = opened<YxDbEntity>(drawing.id(name), YxDb::kForRead);
    context.reasons.noteEdited(name, "extended");
    deleteCollected(context, centre, static_cast<const YxDbEntity*>(open.get()));
}

Extension resolved(const Extend& edit, const Drawing& drawing) {
    const std::string& name = edit.entity.value;
    requireEntity(drawing, edit.entity);
    requireEntities(drawing, edit.to);
    refuseFixed(drawing, name);
    for (const Name& boundary : edit.to) {
        refuseNoCurve(boundary.value, drawing.shape(boundary.value), "boundaries");
        if (boundary == edit.entity)
            throw EditError(name + " cannot be its own boundary");
    }
    refuseWithoutEnd(drawing.shape(name), name, edit.end);
    return firstMeeting(drawing, name, edit.end, edit.to);
}

}  // namespace

void require(const Extend& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Extend& edit, EditContext& context) {
    const Extension meeting = resolved(edit, context.drawing);
    const std::string& name = edit.entity.value;
    const Shape shape = context.drawing.shape(name);
    refuseFarMeeting(context, edit.end == CurveEnd::start ? startPoint(shape) : endPoint(shape), meeting.point, name,
                     edit.to.size() == 1 ? edit.to.front().value : "any of the boundaries");
    moveEnd(context, name, edit.end, meeting);
}

}  // namespace holdfast::editing
