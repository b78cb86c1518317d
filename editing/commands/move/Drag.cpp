#include <array>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxdb/YxGiWorldDraw.h>

#include "document/Names.h"
#include "document/Places.h"
#include "document/text/Suggest.h"
#include "drag/LvConstraintDropData.h"
#include "editing/Evaluation.h"
#include "editing/Verbs.h"
#include "editing/commands/move/Grips.h"
#include "editing/commands/move/Moving.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

/// What the user holds: entities, or some grips of one.
struct Hold {
    std::vector<std::string> names;
    std::vector<int> grips;  ///< of the only entity; empty: all of them are held whole
};

/// A place at which the entity does not change its form is as good as all of it.
bool movesWhole(const Shape& shape, const std::vector<int>& grips) {
    const Vec2 by{1.0, 1.0};
    return withGripsMoved(shape, grips, by) == transformed(shape, translation(by));
}

/// "whole, start or end"
std::string gripsInWords(const Shape& shape) {
    const auto* spline = std::get_if<SplineShape>(&shape);
    if (std::holds_alternative<PolylineShape>(shape) || spline != nullptr)
        return placesOf(shape);
    std::vector<std::string_view> words{"whole"};
    using Row = std::pair<PlaceKind, std::string_view>;
    for (const auto& [kind, word] : {Row{PlaceKind::start, "start"}, Row{PlaceKind::end, "end"},
                                     Row{PlaceKind::mid, "mid"}, Row{PlaceKind::centre, "centre"}})
        if (!gripsAt(shape, {{}, kind}).empty())
            words.push_back(word);
    return oneOf(words);
}

Hold takeGrip(EditText& text, const EditContext& context) {
    const Place place = text.place("a place to drag");
    if (context.drawing.id(place.entity).isNull())
        refuseUnknown(text, context, place.entity);
    refuseFixed(context, place.entity);
    const Shape shape = context.drawing.shape(place.entity);
    if (place.kind == PlaceKind::whole)
        return {{place.entity}, {}};
    const std::vector<int> grips = gripsAt(shape, place);
    if (grips.empty())
        throw EditError(spokenPlace(place) + " has no grip to drag; " + place.entity + " can be dragged " +
                        gripsInWords(shape));
    return {{place.entity}, movesWhole(shape, grips) ? std::vector<int>() : grips};
}

Hold takeHold(EditText& text, const EditContext& context) {
    static constexpr std::array<std::string_view, 1> ends{"by"};
    if (text.peek().find('.') != std::string_view::npos && context.drawing.id(text.peek()).isNull())
        return takeGrip(text, context);
    return {takeSelection(text, context, ends), {}};
}

/// The screen of a host without one: it takes every preview.
class Preview : public YxGiWorldDraw, private YxGiWorldGeometry {
public:
    YxGiWorldGeometry& geometry() const override { return const_cast<Preview&>(*this); }

private:
    void pushModelTransform(const YxGeMatrix3d&) override {}
    void popModelTransform() override {}
    bool draw(const YxDbEntity*) override { return true; }
};

/// The second point of a ray or a construction line is none that constraints know.
void refuseTurning(const EditContext& context, const Hold& held) {
    const Shape shape = context.drawing.shape(held.names.front());
    const bool isAxis = std::holds_alternative<RayShape>(shape) || std::holds_alternative<XlineShape>(shape);
    if (isAxis && !held.grips.empty())
        throw EditError(held.names.front() + " is constrained and cannot be turned by a drag; use \"set " +
                        held.names.front() + " through\" with a point that it is to pass");
}

/// Tells the evaluator that only some points of the dragged entity are held; a whole entity has none of them.
void hold(const EditContext& context, const Hold& held) {
    if (held.grips.empty() || LvConstraintDropData::mpAssocHeader == nullptr)
        return;
    const std::vector<Grip> grips = pointGrips(context.drawing.shape(held.names.front()));
    for (const int number : held.grips)
        for (const Grip& grip : grips)
            if (grip.number == number)
                LvConstraintDropData::mpAssocHeader->points.append({grip.point.x, grip.point.y, 0.0});
}

/// The drag of the process ends with the edit, however that ends: its header belongs to this drawing.
class DragOfThisEdit {
public:
    explicit DragOfThisEdit(const YxArray<YxDbObjectId>& ids) { LvConstraintDropData::init(ids); }
    ~DragOfThisEdit() { LvConstraintDropData::reset(); }
    DragOfThisEdit(const DragOfThisEdit&) = delete;
    DragOfThisEdit& operator=(const DragOfThisEdit&) = delete;
};

/// Follows the cursor from where it was taken up, then drops; EditError when the last step found no place to drop at.
void dragConstrained(const EditContext& context, const Hold& held, Vec2 by, int steps) {
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

void runDrag(EditText& text, EditContext& context) {
    const Hold held = takeHold(text, context);
    text.expect("by");
    const Vec2 by = text.point("the displacement");
    const int steps = text.accept("steps") ? text.integer("the number of steps") : 1;
    if (steps < 1 || steps > 1000)
        text.fail("a drag takes 1 to 1000 steps");
    text.expectEnd();
    context.edited = held.names;
    if (isConstrained(context, constrainedFirst(context, held.names).front())) {
        refuseTurning(context, held);
        dragConstrained(context, held, by, steps);
    }
    dragFree(context, held, by);
}

}  // namespace

const EditVerb kDragVerb{"drag", "drag ENTITY... | ENTITY.PLACE by VECTOR [steps N]", "drag g1.end by 3,2",
                         "pulls entities, or one end, vertex or control point, as far as the constraints let them",
                         &runDrag};

}  // namespace holdfast::editing
