#include "commands/break/ConstraintBreakCmdCenter.h"
#include "workbench/editing/Cutting.h"
#include "workbench/editing/Verbs.h"
#include "workbench/geometry/Parameters.h"

namespace holdfast {

namespace {

YxGePoint3d point3(Vec2 p) {
    return {p.x, p.y, 0.0};
}

void runBreak(EditText& text, EditContext& context) {
    const std::string name = takeEntity(text, context);
    text.expect("at");
    const Vec2 from = text.point("the first break point");
    const Vec2 to = text.accept("to") ? text.point("the second break point") : from;
    text.expectEnd();
    refuseFixed(context, name);
    openAtVertexZero(context, name);
    const Shape shape = context.drawing.shape(name);
    const double firstParam = ontoVertex(shape, paramOnCurve(shape, name, from));
    const double lastParam = ontoVertex(shape, paramOnCurve(shape, name, to));
    const CutPieces pieces = cutOut(shape, name, firstParam, lastParam);
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(&context.drawing.entity(name), point3(pointAt(shape, firstParam)),
                      point3(pointAt(shape, lastParam)));
    applyCut(context, name, pieces, centre);
}

}  // namespace

const EditVerb kBreakVerb{"break", "break ENTITY at POINT [to POINT]", "break g3 at 4,0 to 6,0",
                          "cuts a curve in two, or takes a part out of it", &runBreak};

}  // namespace holdfast
