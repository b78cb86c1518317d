#include <array>
#include <cmath>

#include <yxdb/YxDbCurve.h>

#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "document/HostOpening.h"
#include "editing/Evaluation.h"
#include "editing/Verbs.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/values/Lengthening.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Soundness.h"
#include "inference/PlaneCurves.h"

namespace holdfast::editing {

namespace {

constexpr double kSameLength = 1e-9;  // parts of the length
constexpr double kMet = 1e-6;         // parts of the drawing's extent, within which a placed curve is where it was put

CurveEnd takeEnd(EditText& text) {
    static constexpr std::array<std::string_view, 2> ends{"start", "end"};
    return text.oneOfWords(ends, "the end to move") == "start" ? CurveEnd::start : CurveEnd::end;
}

/// Records the curve as it is; false for those that the centre does not follow.
bool record(const EditContext& context, const std::string& name, ConstraintLengthenCmdCenter& centre) {
    const YxDbObjectId id = context.drawing.id(name);
    const auto open = opened<YxDbObject>(id, YxDb::kForRead);
    return open->isKindOf(YxDbCurve::desc()) && centre.addOriCurveInfo(static_cast<YxDbCurve*>(open.get()), id);
}

/// The whole curve stays as the user wants it, and what is tied to it follows.
void followWhole(const EditContext& context, const std::string& name, const Shape& wanted) {
    followPlaced(context, {name});
    refuseLess(context);
    const double length = lengthOf(wanted), reached = lengthOf(context.drawing.shape(name));
    if (std::abs(reached - length) > kMet * context.drawing.extent())
        throw EditError("the constraints do not let " + name + " be " + spoken(length) + " long; it would become " +
                        spoken(reached));
}

/// The evaluator keeps the end where the user wants it and may move the other one. Where that costs the length, which
/// is what the user asked for, the whole curve is to stay as it is.
void followLengthened(const EditContext& context, const std::string& name, const Shape& wanted) {
    const DrawingChange edited = context.drawing.change();
    evaluate(context);
    const double length = lengthOf(wanted);
    if (std::abs(lengthOf(context.drawing.shape(name)) - length) <= kSameLength * length)
        return;
    putBack(context, edited);
    followWhole(context, name, wanted);
}

void runLengthen(EditText& text, EditContext& context) {
    const std::string name = takeEntity(text, context);
    const CurveEnd end = takeEnd(text);
    static constexpr std::array<std::string_view, 2> ways{"by", "to"};
    const bool isTotal = text.oneOfWords(ways, "how the length is given") == "to";
    const double value = text.number(isTotal ? "the new length" : "the difference in length");
    text.expectEnd();
    refuseFixed(context, name);
    const Shape before = context.drawing.shape(name);
    const double by = isTotal && isCurve(before) ? value - lengthOf(before) : value;
    const Shape after = lengthened(before, name, end, by);
    context.edited.push_back(name);
    ConstraintLengthenCmdCenter centre;
    const bool recorded = record(context, name, centre);
    writeEdited(context, name, after);
    if (recorded && centre.addDataToWork())
        followLengthened(context, name, after);
    else if (isConstrained(context, name))
        followWhole(context, name, after);
}

}  // namespace

const EditVerb kLengthenVerb{"lengthen", "lengthen ENTITY start|end by|to LENGTH", "lengthen g3 end by 4",
                             "moves one end of a curve along it, by a length or to a total length", &runLengthen};

}  // namespace holdfast::editing
