#include <memory>

#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "document/OutOfReach.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/drag/Grips.h"
#include "editing/commands/move/Moving.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

namespace {

/// An entity with grips in the window, and what becomes of it when nothing holds it back.
struct Stretched {
    std::string name;
    std::vector<int> grips;
    Shape shape;
};

struct Caught {
    std::vector<Stretched> entities;
    std::vector<std::string> outOfReach;  ///< names of those that nobody means who draws a window
};

/// Reference geometry is not stretched: a window catches it without being asked to.
Caught caughtBy(const Box& window, const Drawing& drawing, Vec2 by) {
    Caught caught;
    const OutOfReach outOfReach(drawing.layers());
    for (const std::string& name : drawing.namesNear(window)) {
        if (drawing.isFixed(name))
            continue;
        const Shape shape = drawing.shape(name);
        std::vector<int> grips;
        for (const Grip& grip : windowGrips(shape))
            if (window.contains(grip.point))
                grips.push_back(grip.number);
        if (grips.empty())
            continue;
        if (outOfReach.holds(drawing.look(name))) {
            caught.outOfReach.push_back(name);
            continue;
        }
        grips = completed(shape, std::move(grips));
        const Shape stretched = withGripsMoved(shape, grips, by);
        refuseUnsound(name, stretched);
        caught.entities.push_back({name, grips, stretched});
    }
    return caught;
}

YxArray<int> hostArray(const std::vector<int>& numbers) {
    YxArray<int> array;
    for (const int number : numbers)
        array.append(number);
    return array;
}

/// The host's source copies lie where the stretch would bring the entities; the evaluator reads them.
void stretchConstrained(const EditContext& context, const std::vector<Stretched>& caught, Vec2 base, Vec2 by) {
    std::vector<std::unique_ptr<YxDbEntity>> copies;
    YxArray<YxDbObjectId> ids;
    YxArray<void*> sources;
    YxArray<YxArray<int>> indexLists;
    for (const Stretched& entity : caught) {
        copies.push_back(makeEntity(entity.shape));
        ids.append(context.drawing.id(entity.name));
        sources.append(copies.back().get());
        indexLists.append(hostArray(entity.grips));
    }
    ConstraintStretchCmdCenter centre;
    centre.init(ids);
    centre.setStartPnt({base.x, base.y, 0.0});
    centre.setSourceInfo({by.x, by.y, 0.0}, sources, indexLists);
    centre.addDataToWork();
    evaluate(context);
}

Caught resolved(const Stretch& edit, const Drawing& drawing) {
    Box window;
    window.add(edit.first);
    window.add(edit.second);
    Caught caught = caughtBy(window, drawing, edit.by);
    if (caught.entities.empty() && !caught.outOfReach.empty())
        throw EditError("nothing else lies in the window: " + leftOutOfReach(caught.outOfReach));
    if (caught.entities.empty())
        throw EditError("no end, vertex, control point or centre lies in the window from " + spoken(edit.first) +
                        " to " + spoken(edit.second) + "; draw a window around the points to move");
    return caught;
}

}  // namespace

void require(const Stretch& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Stretch& edit, EditContext& context) {
    const Caught found = resolved(edit, context.drawing);
    const std::vector<Stretched>& caught = found.entities;
    if (!found.outOfReach.empty())
        context.remarks.push_back(leftOutOfReach(found.outOfReach));
    bool followed = false;
    for (const Stretched& entity : caught) {
        context.edited.push_back(entity.name);
        if (isConstrained(context, entity.name))
            followed = true;
        else
            context.drawing.write(entity.name, entity.shape);
    }
    if (followed)
        stretchConstrained(context, caught, edit.first, edit.by);
}

}  // namespace holdfast::editing
