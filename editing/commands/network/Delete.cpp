#include <unordered_set>

#include "editing/Commands.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

std::vector<Constraint> resolved(const Delete& edit, const Drawing& drawing) {
    if (edit.constraints.empty())
        throw EditError("expected a constraint; name one or more");
    std::vector<Constraint> found;
    std::unordered_set<std::string> seen;
    for (const Name& name : edit.constraints) {
        found.push_back(requireConstraint(drawing, name));
        if (!seen.insert(found.back().id).second)
            throw EditError(found.back().id + " is named twice; name each constraint once");
    }
    return found;
}

}  // namespace

void require(const Delete& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Delete& edit, EditContext& context) {
    for (const Constraint& constraint : resolved(edit, context.drawing)) {
        context.reasons.note(constraint.id, "deleted as asked");
        for (const std::string& member : constraint.members)
            context.reasons.note(member, "it belonged to " + constraint.id + ", which was deleted as asked");
        context.drawing.removeConstraint(constraint.id);
    }
}

}  // namespace holdfast::editing
