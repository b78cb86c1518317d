#include <mutex>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxdb/YxGiWorldDraw.h>
#include <utility>

#include "document/Names.h"
#include "document/Places.h"
#include "document/text/Suggest.h"
#include "drag/LvConstraintDropData.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/Grips.h"
#include "editing/commands/move/Moving.h"
#include "editing/text/EditText.h"
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

Hold heldPlace(const Sourced<Place>& held, const Drawing& drawing) {
    const Place& place = held.value;
    const Name entity(place.entity, held.column);
    if (const std::string whole = spokenPlace(place); drawing.id(entity.value).isNull() && !drawing.id(whole).isNull())
        return {requireSelection(drawing, {{whole, held.column}}), {}};
    requireEntity(drawing, entity);
    refuseFixed(drawing, place.entity);
    const Shape shape = drawing.shape(place.entity);
    if (place.kind == PlaceKind::whole)
        return {{place.entity}, {}};
    const std::vector<int> grips = gripsAt(shape, place);
    if (grips.empty())
        throw EditError(spokenPlace(place) + " has no grip to drag; " + place.entity + " can be dragged " +
                        gripsInWords(shape));
    return {{place.entity}, movesWhole(shape, grips) ? std::vector<int>() : grips};
}

/// A first name with a dot that no entity has was meant for a place.
void refuseNoPlace(const std::vector<Name>& names, const Drawing& drawing) {
    if (names.empty() || names.front().column == 0 || !drawing.id(names.front().value).isNull())
        return;
    const Name& name = names.front();
    const std::size_t dot = name.value.find('.');
    if (dot == std::string::npos)
        return;
    const std::string_view kind = std::string_view(name.value).substr(dot + 1);
    if (!parsePlace(kind))
        throw RefusedWord(
            {"expected a place to drag" + std::string(kPlaceExamples), placeSuggestion(kind), name.column});
    requireEntity(drawing, {name.value.substr(0, dot), name.column});
    throw RefusedWord({"expected \"by\"", {}, names.size() > 1 ? names[1].column : name.column});
}

Hold resolved(const Drag& edit, const Drawing& drawing) {
    Hold held;
    if (const auto* place = std::get_if<Sourced<Place>>(&edit.held)) {
        held = heldPlace(*place, drawing);
    } else {
        const auto& names = std::get<std::vector<Name>>(edit.held);
        refuseNoPlace(names, drawing);
        held.names = requireSelection(drawing, names, "by");
    }
    if (edit.steps.value < 1 || edit.steps.value > 1000)
        throw RefusedWord({"a drag takes 1 to 1000 steps", {}, edit.steps.column});
    return held;
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
    resolved(edit, drawing);
}

void perform(const Drag& edit, EditContext& context) {
    const Hold held = resolved(edit, context.drawing);
    context.edited = held.names;
    if (isConstrained(context, constrainedFirst(context, held.names).front())) {
        refuseTurning(context, held);
        dragConstrained(context, held, edit.by, edit.steps.value);
    }
    dragFree(context, held, edit.by);
}

}  // namespace holdfast::editing
