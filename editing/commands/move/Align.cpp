#include <array>

#include "commands/align/ConstraintAlignCmdCenter.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/Verbs.h"
#include "editing/commands/move/MirroredConstraints.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

namespace {

/// "from P [P] to Q [Q] [scale]": one pair of points shifts, two turn as well.
PlaneTransform takeAlignment(EditText& text) {
    text.expect("from");
    const Vec2 from = text.point("the first source point");
    const bool turns = !text.nextIs("to");
    const Vec2 fromToward = turns ? text.point("the second source point, or \"to\"") : from;
    text.expect("to");
    const Vec2 to = text.point("the first destination point");
    if (!turns) {
        text.expectEnd();
        return translation({to.x - from.x, to.y - from.y});
    }
    const Vec2 toToward = text.point("the second destination point");
    const bool scaled = text.accept("scale");
    text.expectEnd();
    return alignment(from, fromToward, to, toToward, scaled);
}

void runAlign(EditText& text, EditContext& context) {
    static constexpr std::array<std::string_view, 1> ends{"from"};
    const std::vector<std::string> names = takeSelection(text, context, ends);
    const PlaneTransform transform = takeAlignment(text);
    context.edited = names;
    refuseMovingFixed(context, names, transform);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(idsOf(context, names));
    centre.updateCenterMat(matrixOf(transform));
    if (centre.getAssocObjs().isEmpty()) {
        for (const std::string& name : names)
            moveEntity(context, name, transform);
        return;
    }
    turnMeasures(context.drawing, names, transform);
    centre.addDataToWork();
    evaluate(context);
    refuseLess(context);
}

}  // namespace

const EditVerb kAlignVerb{"align", "align ENTITY... from POINT [POINT] to POINT [POINT] [scale]",
                          "align g1 g2 from 0,0 10,0 to 5,5 5,15",
                          "moves entities so that source points come to destination points", &runAlign};

}  // namespace holdfast::editing
