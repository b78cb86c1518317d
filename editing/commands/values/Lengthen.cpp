#include <cmath>

#include <yxdb/YxDbCurve.h>

#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/values/Lengthening.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Soundness.h"
#include "hosting/HostOpening.h"
#include "inference/PlaneCurves.h"

namespace holdfast::editing {

namespace {

/// Records the curve as it is; false for those that the centre does not follow.
bool record(const EditContext& context, const std::string& name, ConstraintLengthenCmdCenter& centre) {
    const YxDbObjectId id = context.drawing.id(name);
    const auto open = opened<YxDbObject>(id, YxDb::kForRead);
    return open->isKindOf(YxDbCurve::desc()) && centre.addOriCurveInfo(static_cast<YxDbCurve*>(open.get()), id);
}

/// The whole curve stays as the user wants it, and what is tied to it follows.
void followWhole(const EditContext& context, const std::string& name, const Shape& before, const Shape& wanted) {
    context.evaluator.knowPlaced(name, before);
    followPlaced(context, {name});
    refuseLess(context);
    const double length = lengthOf(wanted), reached = lengthOf(context.drawing.shape(name));
    if (std::abs(reached - length) > kHolds * context.drawing.extent())
        throw EditError("the constraints do not let " + name + " be " + spoken(length) + " long; it would become " +
                        spoken(reached));
}

/// What is tried, and where a line cannot be followed so, it gets the length all the same, which is what the user asked
/// for, if its ends may come to lie where the constraints lead them.
template <class Try>
void orLength(const EditContext& context, const std::string& name, const Shape& before, const Shape& wanted,
              const Try& follow) {
    const DrawingChange edited = context.drawing.change();
    try {
        follow();
    } catch (const EditError&) {
        if (!std::holds_alternative<LineShape>(wanted))
            throw;
        putBack(context, edited);
        context.drawing.write(name, before);
        if (context.evaluator.group().leadLength(name, lengthOf(wanted)))
            return;
        context.drawing.write(name, wanted);
        throw;
    }
}

void followWholeOrLength(const EditContext& context, const std::string& name, const Shape& before,
                         const Shape& wanted) {
    orLength(context, name, before, wanted, [&] { followWhole(context, name, before, wanted); });
}

/// The evaluator keeps the end where the user wants it and may move the other one. Where that costs the length, which
/// is what the user asked for, the whole curve is to stay as it is.
void followLengthened(const EditContext& context, const std::string& name, const Shape& before, const Shape& wanted) {
    const DrawingChange edited = context.drawing.change();
    orLength(context, name, before, wanted, [&] { evaluate(context); });
    const double length = lengthOf(wanted);
    if (std::abs(lengthOf(context.drawing.shape(name)) - length) <= kSamePoint * length)
        return;
    putBack(context, edited);
    followWholeOrLength(context, name, before, wanted);
}

/// The curve as it is to be.
Shape resolved(const Lengthen& edit, const Drawing& drawing) {
    const std::string& name = edit.entity.value;
    requireEntity(drawing, edit.entity);
    refuseFixed(drawing, name);
    const Shape before = drawing.shape(name);
    const bool isTotal = edit.way == Lengthen::Way::to;
    const double by = isTotal && isCurve(before) ? edit.length - lengthOf(before) : edit.length;
    return lengthened(before, name, edit.end, by);
}

}  // namespace

void require(const Lengthen& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Lengthen& edit, EditContext& context) {
    const std::string& name = edit.entity.value;
    const Shape before = context.drawing.shape(name), after = resolved(edit, context.drawing);
    context.edited.push_back(name);
    ConstraintLengthenCmdCenter centre;
    const bool recorded = record(context, name, centre);
    writeEdited(context, name, after);
    if (recorded && centre.addDataToWork())
        followLengthened(context, name, before, after);
    else if (isConstrained(context, name))
        followWholeOrLength(context, name, before, after);
}

}  // namespace holdfast::editing
