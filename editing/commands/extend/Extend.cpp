#include <array>
#include <cmath>

#include "commands/extend/ConstraintExtendCmdCenter.h"
#include "document/HostOpening.h"
#include "editing/Verbs.h"
#include "geometry/Vec2.h"
#include "geometry/construction/Extending.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

std::string wordOf(CurveEnd end) {
    return end == CurveEnd::start ? "start" : "end";
}

CurveEnd takeEnd(EditText& text) {
    static constexpr std::array<std::string_view, 2> ends{"start", "end"};
    return text.oneOfWords(ends, "the end to extend") == "start" ? CurveEnd::start : CurveEnd::end;
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
    constexpr double fullTurn = 6.283185307179586476925;
    return turns ? way - fullTurn * std::floor(way / fullTurn) : way;
}

/// A boundary on which the end lies as it is.
void refuseThereAlready(const EditContext& context, const std::string& name, CurveEnd end,
                        const std::vector<std::string>& boundaries) {
    const Shape shape = context.drawing.shape(name);
    const std::optional<Vec2> point = end == CurveEnd::start ? startPoint(shape) : endPoint(shape);
    for (const std::string& boundary : boundaries)
        if (nearestOn(context.drawing.shape(boundary), *point).distance <= 1e-9 * (1.0 + norm(*point)))
            throw EditError("the " + wordOf(end) + " of " + name + " lies on " + boundary +
                            " already; choose a boundary ahead of it");
}

/// Where the prolonged end first meets one of the boundaries.
Extension firstMeeting(const EditContext& context, const std::string& name, CurveEnd end,
                       const std::vector<std::string>& boundaries) {
    const Shape shape = context.drawing.shape(name);
    std::optional<Extension> nearest;
    for (const std::string& boundary : boundaries) {
        const std::optional<Extension> found = extensionTo(shape, end, context.drawing.shape(boundary));
        if (found && (!nearest || wayTo(shape, end, found->param) < wayTo(shape, end, nearest->param)))
            nearest = found;
    }
    if (!nearest)
        refuseThereAlready(context, name, end, boundaries);
    if (!nearest)
        throw EditError("the " + wordOf(end) + " of " + name + " does not meet " +
                        (boundaries.size() == 1 ? boundaries.front() : std::string("any of the boundaries")) +
                        " however far it is extended; choose another boundary");
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
    centre.deleteConstraint(open.get());
}

void runExtend(EditText& text, EditContext& context) {
    const std::string name = takeEntity(text, context);
    const CurveEnd end = takeEnd(text);
    text.expect("to");
    const std::vector<std::string> boundaries = takeEntities(text, context, "a boundary", {});
    text.expectEnd();
    refuseFixed(context, name);
    for (const std::string& boundary : boundaries) {
        refuseNoCurve(boundary, context.drawing.shape(boundary), "boundaries");
        if (boundary == name)
            throw EditError(name + " cannot be its own boundary");
    }
    refuseWithoutEnd(context.drawing.shape(name), name, end);
    moveEnd(context, name, end, firstMeeting(context, name, end, boundaries));
}

}  // namespace

const EditVerb kExtendVerb{"extend", "extend ENTITY start|end to ENTITY...", "extend g3 end to g7",
                           "leads one end of a curve on to the first boundary that it meets", &runExtend};

}  // namespace holdfast::editing
