#include <algorithm>
#include <memory>

#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "editing/Evaluation.h"
#include "editing/Verbs.h"
#include "editing/commands/move/Grips.h"
#include "editing/commands/move/Moving.h"
#include "hosting/HostShapes.h"

namespace holdfast::editing {

namespace {

struct Window {
    Vec2 first, second;

    bool holds(Vec2 p) const {
        return p.x >= std::min(first.x, second.x) && p.x <= std::max(first.x, second.x) &&
               p.y >= std::min(first.y, second.y) && p.y <= std::max(first.y, second.y);
    }
};

/// An entity with grips in the window, and what becomes of it when nothing holds it back.
struct Stretched {
    std::string name;
    std::vector<int> grips;
    Shape shape;
};

/// Reference geometry is not stretched: a window catches it without being asked to.
std::vector<Stretched> caughtBy(const Window& window, const EditContext& context, Vec2 by) {
    std::vector<Stretched> caught;
    for (const std::string& name : context.drawing.names()) {
        if (context.drawing.isFixed(name))
            continue;
        const Shape shape = context.drawing.shape(name);
        std::vector<int> grips;
        for (const Grip& grip : windowGrips(shape))
            if (window.holds(grip.point))
                grips.push_back(grip.number);
        if (grips.empty())
            continue;
        grips = completed(shape, std::move(grips));
        const Shape stretched = withGripsMoved(shape, grips, by);
        refuseUnsound(name, stretched);
        caught.push_back({name, grips, stretched});
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

void runStretch(EditText& text, EditContext& context) {
    text.expect("window");
    const Vec2 first = text.point("a corner of the window");
    const Vec2 second = text.point("the opposite corner");
    text.expect("by");
    const Vec2 by = text.point("the displacement");
    text.expectEnd();
    const std::vector<Stretched> caught = caughtBy({first, second}, context, by);
    if (caught.empty())
        throw EditError("no end, vertex, control point or centre lies in the window from " + spoken(first) + " to " +
                        spoken(second) + "; draw a window around the points to move");
    bool followed = false;
    for (const Stretched& entity : caught) {
        context.edited.push_back(entity.name);
        if (isConstrained(context, entity.name))
            followed = true;
        else
            context.drawing.write(entity.name, entity.shape);
    }
    if (followed)
        stretchConstrained(context, caught, first, by);
}

}  // namespace

const EditVerb kStretchVerb{"stretch", "stretch window POINT POINT by VECTOR", "stretch window 0,0 10,10 by 5,0",
                            "moves all ends, vertices and control points that lie in a window", &runStretch};

}  // namespace holdfast::editing
