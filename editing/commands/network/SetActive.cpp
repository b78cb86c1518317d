#include <algorithm>
#include <unordered_set>

#include "document/Names.h"
#include "editing/Commands.h"
#include "editing/commands/network/Formulas.h"
#include "editing/commands/network/NamedConstraints.h"
#include "hosting/evaluator/Implied.h"

namespace holdfast::editing {

namespace {

/// A constraint with what it takes along: the members of a composite before it.
using Family = std::vector<Constraint>;

void addMembers(const Drawing& drawing, const Constraint& constraint, Family& family) {
    for (const std::string& member : constraint.members)
        if (const std::optional<Constraint> found = drawing.constraint(member))
            addMembers(drawing, *found, family);
    family.push_back(constraint);
}

void refuseMember(const Drawing& drawing, const Constraint& constraint, const Name& name) {
    for (const std::string& id : drawing.constraintIds())
        if (const std::vector<std::string> members = drawing.constraint(id)->members;
            std::find(members.begin(), members.end(), constraint.id) != members.end())
            throw RefusedWord(
                {constraint.id + " belongs to " + id + ", which goes as a whole; name that", {}, name.column});
}

Family familyOf(const Drawing& drawing, const Name& name, bool active) {
    const Constraint found = requireConstraint(drawing, name);
    if (!canBeGiven(found.type) && !ownsMembers(found.type))
        throw RefusedWord({found.id + " is of a kind that other constraints bring along (" +
                               std::string(typeName(found.type)) + "); it goes with them",
                           {},
                           name.column});
    if (found.active == active)
        throw EditError(found.id + (active ? " is switched on" : " is switched off") + " already");
    refuseMember(drawing, found, name);
    Family family;
    addMembers(drawing, found, family);
    return family;
}

std::vector<Family> resolved(const SetActive& edit, const Drawing& drawing) {
    if (edit.constraints.empty())
        throw EditError("expected a constraint; name one or more");
    std::vector<Family> families;
    std::unordered_set<std::string> seen;
    for (const Name& name : edit.constraints) {
        families.push_back(familyOf(drawing, name, edit.active));
        if (const std::string& id = families.back().back().id; !seen.insert(id).second)
            throw EditError(id + " is named twice; name each constraint once");
    }
    return families;
}

std::vector<std::string> idsOf(const Family& family) {
    std::vector<std::string> ids;
    ids.reserve(family.size());
    for (const Constraint& constraint : family)
        ids.push_back(constraint.id);
    return ids;
}

void remarkImplied(EditContext& context, const Document& part, const Constraint& constraint,
                   const std::vector<std::string>& by) {
    context.remarks.push_back(constraint.id + " says what " +
                              (by.empty() ? std::string("holds anyway, between what may not move")
                                          : "follows already from " + spokenConstraints(part, by)) +
                              ": it is redundant");
}

/// What it says, and what follows from the others instead.
[[noreturn]] void refuseOther(const Document& part, const Constraint& wanted, double measured,
                              const std::vector<std::string>& by) {
    const auto said = [&](double value) { return spoken(spokenValue(wanted.type, value)); };
    throw EditError(
        wanted.id + " says " + said(*wanted.value) + ", but it is " + said(measured) +
        (by.empty() ? std::string(" between what may not move")
                    : ", which follows from " + spokenConstraints(part, by)) +
        (by.empty() ? std::string("; leave it switched off") : std::string("; delete or suppress one of them first")));
}

/// Moves the drawing for what has been switched on, dimensions from what they measure to what they say.
void lead(EditContext& context, const Constraint& wanted, double measured) {
    Drawing& drawing = context.drawing;
    if (!isDimension(wanted.type)) {
        if (canBeGiven(wanted.type) && !context.evaluator.group().hold(wanted.id))
            throw EditError("the constraints of the drawing do not let " + wanted.id + " hold");
    } else if (wanted.driving && !leadWith(context, wanted, calculated(drawing, {{wanted.id, itemOf(wanted)}}))) {
        throw EditError("the constraints do not let " + wanted.id + " be " +
                        spoken(spokenValue(wanted.type, *wanted.value)) + "; it is " +
                        spoken(spokenValue(wanted.type, measured)));
    }
}

/// As it is with the value that it measures.
Constraint asDrawn(const Drawing& drawing, Constraint constraint) {
    constraint.active = true;
    if (isDimension(constraint.type))
        constraint.value = measureOf(drawing, constraint);
    return constraint;
}

/// What follows from others anyway is told, or refused where it says another thing than they do.
void lookAtOthers(EditContext& context, const Constraint& wanted, const Constraint& now) {
    if (!wanted.driving)
        return;
    const Document part = withNew(context.drawing, now);
    if (!isHeld(part, part.constraints.size() - 1))
        return;
    const std::optional<std::vector<std::string>> by = implying(part, wanted.id);
    if (by && isDimension(wanted.type) && !agrees(*now.value, *wanted.value))
        refuseOther(part, wanted, *now.value, *by);
    if (by)
        remarkImplied(context, part, wanted, *by);
}

void switchOn(EditContext& context, const Family& family) {
    Drawing& drawing = context.drawing;
    std::vector<double> measured;
    for (const Constraint& wanted : family) {
        const Constraint now = asDrawn(drawing, wanted);
        if (canBeGiven(wanted.type))
            lookAtOthers(context, wanted, now);
        if (now.value)
            drawing.setMeasure(wanted.id, *now.value);
        measured.push_back(now.value.value_or(0.0));
    }
    drawing.setActive(idsOf(family), true);
    for (std::size_t i = 0; i < family.size(); ++i)
        lead(context, family[i], measured[i]);
}

}  // namespace

void require(const SetActive& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const SetActive& edit, EditContext& context) {
    for (const Family& family : resolved(edit, context.drawing))
        if (edit.active)
            switchOn(context, family);
        else
            context.drawing.setActive(idsOf(family), false);
}

}  // namespace holdfast::editing
