#include <algorithm>
#include <cmath>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/Commands.h"
#include "editing/commands/network/Formulas.h"
#include "editing/commands/network/NamedConstraints.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"
#include "hosting/evaluator/Implied.h"

namespace holdfast::editing {

namespace {

/// A word behind the places that begins like a number, or is what numbers must not be, was meant for the value.
void refuseSpoiltNumber(const Constrain& edit, const Drawing& drawing, const Sourced<Place>& place) {
    const std::string& word = place.value.entity;
    if (!isDimension(edit.type.value) || !isLikeNumber(word) || !drawing.id(word).isNull())
        return;
    throw RefusedWord(
        {"expected the value, a number such as 2.5; with a unit it is a formula, such as = 5 mm", {}, place.column});
}

void refuseForeignWords(const Constrain& edit, const Drawing& drawing) {
    const std::string_view kind = typeName(edit.type.value);
    if (!canBeGiven(edit.type.value))
        throw RefusedWord({std::string(kind) + " is a kind that other constraints bring along", {}, edit.type.column});
    if (!isDimension(edit.type.value) && (edit.value || edit.anyway || !edit.formula.value.empty()))
        throw EditError(std::string(kind) + " is no dimension: it takes neither a value nor \"anyway\"");
    if (!edit.as.value.empty())
        requireNewName(drawing, edit.as);
    for (const Sourced<Place>& place : edit.places) {
        refuseSpoiltNumber(edit, drawing, place);
        requireEntity(drawing, {place.value.entity, place.column});
    }
}

/// The constraint as the edit means it, at the value that it measures now.
struct Wish {
    Constraint constraint;
    std::optional<double> value;  ///< that it is to have afterwards
};

/// As the drawing keeps it.
std::optional<double> valueOf(const Constrain& edit, Constraint wanted, const Drawing& drawing) {
    if (edit.value)
        return keptValue(wanted.type, *edit.value);
    if (edit.formula.value.empty())
        return std::nullopt;
    wanted.value = 0.0;
    wanted.formula = edit.formula.value;
    return typedValue(drawing, itemOf(wanted), edit.formula).value;
}

/// The gap of lines is one number only where they are parallel, as they are drawn.
void refuseSlanted(const Drawing& drawing, const Constraint& wanted) {
    if (wanted.type != ConstraintType::distance || wanted.refs.size() != 2)
        return;
    const std::optional<Vec2> a = directionIn(drawing, wanted.refs[0]), b = directionIn(drawing, wanted.refs[1]);
    if (a && b && std::abs(cross(*a, *b)) > kHolds)
        throw EditError(spokenPlace(wanted.refs[0]) + " and " + spokenPlace(wanted.refs[1]) +
                        " are not parallel and have no distance; constrain them parallel first, or name a point of "
                        "one, such as " +
                        wanted.refs[1].entity + ".start");
}

Wish resolved(const Constrain& edit, const Drawing& drawing) {
    refuseForeignWords(edit, drawing);
    Wish wish{{.id = edit.as.value.empty() ? drawing.freeConstraintId() : edit.as.value, .type = edit.type.value}, {}};
    Constraint& wanted = wish.constraint;
    for (const Sourced<Place>& place : edit.places)
        wanted.refs.push_back(place.value);
    const bool isDimension = traitsOf(wanted.type).isDimension();
    if (isDimension)
        wanted.value = valueOf(edit, wanted, drawing).value_or(1.0);  // any that all of them may have
    if (const std::optional<Fault> fault = faultOn(drawing, wanted))
        throw EditError("found " + fault->found + "; expected " + fault->expected);
    if (!isDimension)
        return wish;
    refuseImpossible(drawing, wanted);
    refuseSlanted(drawing, wanted);
    if (valueOf(edit, wanted, drawing))
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

/// A formula comes with what other formulas say of the new one.
bool leadNew(const Constrain& edit, EditContext& context, const Wish& wish) {
    Constraint goal = wish.constraint;
    goal.value = wish.value;
    if (!edit.formula.value.empty() && !isPlainNumber(edit.formula.value))
        goal.formula = edit.formula.value;
    const Calculated next = calculated(context.drawing, {{goal.id, itemOf(goal)}}, edit.formula);
    if (!leadWith(context, goal, next))
        return false;
    if (!goal.formula.empty())
        context.drawing.setFormula(goal.id, goal.formula);
    return true;
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
    if (!by && !wish.value)
        return;
    if (!by && leadNew(edit, context, wish))
        return;
    if (!edit.anyway)
        throw EditError("the constraints do not let it be " + spoken(spokenValue(wanted.type, *wish.value)) +
                        "; it is " + spoken(spokenValue(wanted.type, *wanted.value)));
    drawing.setDriving(wanted.id, false);
    if (wish.value && !agrees(*wish.value, *wanted.value))
        context.remarks.push_back(wanted.id + " measures " + spoken(spokenValue(wanted.type, *wanted.value)) +
                                  " and does not hold the " + spoken(spokenValue(wanted.type, *wish.value)) +
                                  " that was asked for: the other constraints say what it is");
}

/// What holds as drawn and follows from others adds nothing.
void addGeometric(EditContext& context, const Wish& wish) {
    const Document part = withNew(context.drawing, wish.constraint);
    if (isHeld(part, part.constraints.size() - 1))
        if (const std::optional<std::vector<std::string>> by = implying(part, wish.constraint.id))
            refuseImplied(wish, part, *by);
    context.drawing.addConstraint(wish.constraint);
    if (!context.evaluator.group().hold(wish.constraint.id))
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
