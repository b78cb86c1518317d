#include <algorithm>
#include <unordered_set>

#include "editing/Commands.h"
#include "editing/commands/network/Formulas.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

struct Doomed {
    std::vector<Constraint> constraints;
    std::vector<std::string> parameters;
};

/// Who deletes a dimension means the dimension: what is calculated from it goes on as a plain number. A parameter is
/// there to be used.
void refuseUsed(const Doomed& doomed, const Drawing& drawing) {
    for (const std::string& parameter : doomed.parameters) {
        std::vector<std::string> going{parameter};
        for (const std::string& other : doomed.parameters)
            if (other != parameter)
                going.push_back(other);
        for (const Constraint& constraint : doomed.constraints)
            going.push_back(constraint.id);
        if (const std::string users = usersOf(drawing, parameter, going); !users.empty())
            throw EditError(parameter + " is used by " + users + "; give these other formulas or numbers first");
    }
}

Doomed resolved(const Delete& edit, const Drawing& drawing) {
    if (edit.constraints.empty())
        throw EditError("expected a constraint; name one or more");
    Doomed found;
    std::unordered_set<std::string> seen;
    for (const Name& name : edit.constraints) {
        if (drawing.hasParameter(name.value))
            found.parameters.push_back(name.value);
        else
            found.constraints.push_back(requireConstraint(drawing, name));
        const std::string& named = drawing.hasParameter(name.value) ? name.value : found.constraints.back().id;
        if (!seen.insert(named).second)
            throw EditError(named + " is named twice; name each constraint once");
    }
    refuseUsed(found, drawing);
    return found;
}

}  // namespace

void require(const Delete& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Delete& edit, EditContext& context) {
    const Doomed doomed = resolved(edit, context.drawing);
    std::vector<Parameter> parameters = context.drawing.parameters();
    const auto goes = [&](const Parameter& parameter) {
        return std::find(doomed.parameters.begin(), doomed.parameters.end(), parameter.name) != doomed.parameters.end();
    };
    if (std::erase_if(parameters, goes) > 0)
        context.drawing.setParameters(std::move(parameters));
    for (const Constraint& constraint : doomed.constraints) {
        context.reasons.note(constraint.id, "deleted as asked");
        for (const std::string& member : constraint.members)
            context.reasons.note(member, "it belonged to " + constraint.id + ", which was deleted as asked");
        context.drawing.removeConstraint(constraint.id);
    }
}

}  // namespace holdfast::editing
