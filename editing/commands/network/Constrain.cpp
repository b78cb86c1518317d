#include <algorithm>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/Commands.h"
#include "editing/commands/network/NamedConstraints.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"
#include "hosting/evaluator/Implied.h"

namespace holdfast::editing {

namespace {

/// The drawing around a constraint that it does not have yet, and that constraint.
Document withNew(const Drawing& drawing, const Constraint& wanted) {
    Document part = surroundingsOf(drawing, wanted);
    part.constraints.push_back(wanted);
    return part;
}

double measureOf(const Drawing& drawing, const Constraint& wanted) {
    Document part = drawing.around(entitiesOf(wanted));
    part.constraints = {wanted};
    return DocumentSketch(part).measured(0);
}

bool isHeld(const Document& part, std::size_t number) {
    const DocumentSketch sketch(part);
    return sketch.shortfallOf(number) <= kHolds * sketch.size();
}

void refuseForeignWords(const Constrain& edit, const Drawing& drawing) {
    const std::string_view kind = typeName(edit.type.value);
    if (!canBeGiven(edit.type.value))
        throw RefusedWord({std::string(kind) + " is a kind that other constraints bring along", {}, edit.type.column});
    if (!isDimension(edit.type.value) && (edit.value || edit.anyway))
        throw EditError(std::string(kind) + " is no dimension: it takes neither a value nor \"anyway\"");
    if (!edit.as.value.empty() && drawing.hasConstraint(edit.as.value))
        throw RefusedWord(
            {"the drawing has a constraint " + edit.as.value + " already; choose another name", {}, edit.as.column});
    for (const Sourced<Place>& place : edit.places)
        requireEntity(drawing, {place.value.entity, place.column});
}

/// The constraint as the edit means it, at the value that it measures now.
struct Wish {
    Constraint constraint;
    std::optional<double> value;  ///< that it is to have afterwards
};

Wish resolved(const Constrain& edit, const Drawing& drawing) {
    refuseForeignWords(edit, drawing);
    Wish wish{{.id = edit.as.value.empty() ? drawing.freeConstraintId() : edit.as.value, .type = edit.type.value}, {}};
    Constraint& wanted = wish.constraint;
    for (const Sourced<Place>& place : edit.places)
        wanted.refs.push_back(place.value);
    const bool isDimension = traitsOf(wanted.type).isDimension();
    if (isDimension)
        wanted.value = edit.value ? keptValue(wanted.type, *edit.value) : 1.0;  // any that all of them may have
    if (const std::optional<Fault> fault = faultOn(drawing, wanted))
        throw EditError("found " + fault->found + "; expected " + fault->expected);
    if (!isDimension)
        return wish;
    if (edit.value)
        wish.value = wanted.value;
    wanted.value = measureOf(drawing, wanted);
    // Coordinates are told from one place to the other; who gives a length without a sign means the way it is drawn.
    if (traitsOf(wanted.type).value == ConstraintValue::signedLength && *wanted.value < 0.0 &&
        wish.value.value_or(1.0) > 0.0) {
        std::reverse(wanted.refs.begin(), wanted.refs.end());
        wanted.value = -*wanted.value;
    }
    return wish;
}

[[noreturn]] void refuseImplied(const Wish& wish, const Document& part, const std::vector<std::string>& by) {
    const Constraint& wanted = wish.constraint;
    const std::string follows = by.empty() ? " holds already, between what may not move"
                                           : " follows already from " + spokenConstraints(part, by);
    if (!wanted.value)
        throw EditError("this " + std::string(typeName(wanted.type)) + follows +
                        "; it would be redundant, nothing was added");
    const std::string measure = spoken(spokenValue(wanted.type, *wanted.value));
    const std::string remedy = std::string("; add \"anyway\" for a dimension that measures") +
                               (by.empty() ? "" : ", or delete one of them first");
    throw EditError("this " + std::string(typeName(wanted.type)) + " is " + measure + " and" + follows + remedy);
}

/// Adds a dimension at what it measures and leads it to its value.
void addDimension(const Constrain& edit, EditContext& context, const Wish& wish) {
    Drawing& drawing = context.drawing;
    const Constraint& wanted = wish.constraint;
    const Document part = withNew(drawing, wanted);
    const std::optional<std::vector<std::string>> by = implying(part, wanted.id);
    if (by && !edit.anyway)
        refuseImplied(wish, part, *by);
    drawing.addConstraint(wanted);
    if (by)
        return drawing.setDriving(wanted.id, false);
    if (!wish.value || context.evaluator.lead({{wanted.id, *wish.value}}))
        return;
    if (!edit.anyway)
        throw EditError("the constraints do not let it be " + spoken(*edit.value) + "; it is " +
                        spoken(spokenValue(wanted.type, *wanted.value)));
    drawing.setDriving(wanted.id, false);
}

/// What holds as drawn and follows from others adds nothing.
void addGeometric(EditContext& context, const Wish& wish) {
    const Document part = withNew(context.drawing, wish.constraint);
    if (isHeld(part, part.constraints.size() - 1))
        if (const std::optional<std::vector<std::string>> by = implying(part, wish.constraint.id))
            refuseImplied(wish, part, *by);
    context.drawing.addConstraint(wish.constraint);
    if (!context.evaluator.hold(wish.constraint.id))
        throw EditError("the constraints of the drawing do not let it hold");
}

}  // namespace

void require(const Constrain& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Constrain& edit, EditContext& context) {
    const Wish wish = resolved(edit, context.drawing);
    if (wish.constraint.value)
        addDimension(edit, context, wish);
    else
        addGeometric(context, wish);
}

}  // namespace holdfast::editing
