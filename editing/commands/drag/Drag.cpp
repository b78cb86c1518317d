#include <mutex>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxdb/YxGiWorldDraw.h>

#include "drag/LvConstraintDropData.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/drag/Grips.h"
#include "editing/commands/drag/Hold.h"
#include "editing/commands/move/Moving.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

/// The screen of a host without one: it takes every preview.
class Preview : public YxGiWorldDraw, private YxGiWorldGeometry {
public:
    YxGiWorldGeometry& geometry() const override { return const_cast<Preview&>(*this); }

private:
    void pushModelTransform(const YxGeMatrix3d&) override {}
    void popModelTransform() override {}
    bool draw(const YxDbEntity*) override { return true; }
};

/// Tells the evaluator that only some points of the dragged entity are held; a whole entity has none of them.
void hold(const EditContext& context, const Hold& held) {
    if (LvConstraintDropData::mpAssocHeader != nullptr)
        for (const Vec2 point : held.pointsIn(context.drawing))
            LvConstraintDropData::mpAssocHeader->points.append({point.x, point.y, 0.0});
}

/// The module keeps one drag for all threads, so that they take turns.
std::mutex g_oneDrag;

/// The drag of the process ends with the edit, however that ends: its header belongs to this drawing.
class DragOfThisEdit {
public:
    explicit DragOfThisEdit(const YxArray<YxDbObjectId>& ids) { LvConstraintDropData::init(ids); }
    ~DragOfThisEdit() { LvConstraintDropData::reset(); }
    DragOfThisEdit(const DragOfThisEdit&) = delete;
    DragOfThisEdit& operator=(const DragOfThisEdit&) = delete;
};

/// Follows the cursor from where it was taken up, then drops; EditError when the last step found no place to drop at.
void dragConstrained(EditContext& context, const Hold& held, Vec2 by, int steps) {
    const std::lock_guard turn(g_oneDrag);
    const DragOfThisEdit drag(idsOf(context, held.names));
    if (LvConstraintDropData::mpAssocHeader == nullptr)
        throw EditError("the host began no drag of " + held.names.front());
    hold(context, held);
    Preview preview;
    for (int step = 1; step <= steps; ++step) {
        LvConstraintDropData::addDataToWork(matrixOf(translation((static_cast<double>(step) / steps) * by)));
        LvConstraintDropData::evaluate();
        LvConstraintDropData::draw(&preview);
    }
    if (LvConstraintDropData::mpAssocHeader->dropChanged)
        throw EditError("the constraints of the drawing do not allow this drag");
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    markChanged(context);
    evaluate(context);
    const Evaluation& last = context.evaluator.last();
    constexpr double exact = 1e-9;  // parts of the drawing's extent
    const bool isShort = last.miss > exact * context.drawing.extent();
    context.shortfall = {isShort ? last.miss : 0.0, isShort ? last.heldBackBy : std::vector<std::string>(),
                         last.leftAlone};
}

void dragFree(const EditContext& context, const Hold& held, Vec2 by) {
    for (const std::string& name : held.names) {
        if (isConstrained(context, name))
            continue;
        const Shape shape = context.drawing.shape(name);
        writeEdited(context, name,
                    held.grips.empty() ? transformed(shape, translation(by)) : withGripsMoved(shape, held.grips, by));
    }
}

}  // namespace

void require(const Drag& edit, const Drawing& drawing) {
    heldBy(edit, drawing);
}

void perform(const Drag& edit, EditContext& context) {
    const Hold held = heldBy(edit, context.drawing);
    context.edited = held.names;
    if (isConstrained(context, constrainedFirst(context, held.names).front())) {
        refuseTurning(context.drawing, held);
        dragConstrained(context, held, edit.by, edit.steps.value);
    }
    dragFree(context, held, edit.by);
}

}  // namespace holdfast::editing
